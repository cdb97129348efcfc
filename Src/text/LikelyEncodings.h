#pragma once

#include "text/TextEncoding.h"

#include <QByteArrayView>
#include <QList>

namespace tidemark {

/// Encodings in which the bytes are text, the likeliest first, as far as that can be told from how languages
/// are written; few bytes tell little. Each allows all of the bytes, which should be whole lines of a few
/// kilobytes. Empty where nothing fits.
QList<StringEncoding> likelyEncodings(QByteArrayView bytes);

} // namespace tidemark
