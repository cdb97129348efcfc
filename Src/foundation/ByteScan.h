#pragma once

#include <QByteArrayView>

namespace tidemark {

/// The index of the first CR or LF byte, or -1.
qsizetype indexOfLineEnd(QByteArrayView bytes);

} // namespace tidemark
