#pragma once

#include <QByteArrayView>
#include <QStringView>

namespace tidemark {

// A line ends at LF, at CR LF, or at a CR that no LF follows, and its line end is a part of it. What follows
// the last line end is a line, too, unless it is empty. This is the rule for the lines that are searched and
// rewritten; whoever needs all line ends of a large block at once finds faster ways in ByteScan.h.

/// The length of the first line in the bytes; 0 only when there are none.
qsizetype lengthOfFirstLine(QByteArrayView bytes);

/// A line without its line end.
QByteArrayView withoutLineEnd(QByteArrayView line);
QStringView withoutLineEnd(QStringView line);

/// How many lines there are in the text.
qint64 countLines(QStringView text);

} // namespace tidemark
