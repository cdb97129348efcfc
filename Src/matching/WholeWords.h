#pragma once

#include "text/TextRange.h"

#include <QByteArrayView>
#include <QStringView>

namespace tidemark {

/// Letters, digits and marks by their Unicode properties, and the underscore.
bool isWordCharacter(char32_t codePoint);

/// Whether no word character touches the first or last character of the range where that is a word character
/// itself. An empty range is touched by nothing.
bool isWholeWord(QStringView text, TextRange range);
/// The same for a range of bytes in UTF-8; a cut character counts as the whole one.
bool isWholeWord(QByteArrayView utf8, TextRange range);

/// Where to go on behind a range that isn't a whole word: behind the word that it begins in, or else at the
/// next character. Further than the start.
qint64 positionBehindFailedWord(QStringView text, TextRange range);
qint64 positionBehindFailedWord(QByteArrayView utf8, TextRange range);

} // namespace tidemark
