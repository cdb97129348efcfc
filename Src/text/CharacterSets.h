#pragma once

#include "text/TextRange.h"

#include <QStringView>

namespace tidemark {

/// U+000A to U+000D, U+0085, U+2028, U+2029.
bool isNewlineCharacter(char16_t unit);
/// General categories Cc and Cf.
bool isControlCharacter(char32_t codePoint);

/// The stretch that is left after line-break characters are taken off both ends.
TextRange rangeWithoutNewlinesAtEnds(QStringView text);

} // namespace tidemark
