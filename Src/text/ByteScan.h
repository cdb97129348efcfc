#pragma once

#include <QByteArrayView>

namespace tidemark {

/// True when every byte is below 0x80, so also for none at all.
bool isAscii(QByteArrayView bytes);

/// The index of the first CR or LF byte, or -1.
qsizetype indexOfLineEnd(QByteArrayView bytes);

/// The index of the last byte of that value, or -1.
qsizetype lastIndexOf(char byte, QByteArrayView bytes);

/// How many lines end in the bytes: at LF, at CR LF, or at a CR that no LF follows in them.
qint64 countLineEnds(QByteArrayView bytes);

/// False only when every line in the bytes, line end included, is known to be of at most `length` bytes.
bool mayHoldLineLongerThan(QByteArrayView bytes, qsizetype length);

} // namespace tidemark
