#include "matching/WholeWords.h"

#include <QChar>

#include <unicode/uchar.h>

namespace tidemark {

namespace {

struct Character
{
    char32_t codePoint = 0;
    qint64 end = 0;
};

Character characterAt(QStringView text, qint64 position)
{
    const QChar unit = text[position];
    if (unit.isHighSurrogate() && position + 1 < text.size() && text[position + 1].isLowSurrogate())
        return {QChar::surrogateToUcs4(unit, text[position + 1]), position + 2};
    return {unit.unicode(), position + 1};
}

qint64 startOfCharacter(QStringView text, qint64 position)
{
    const bool isSecondHalf =
        text[position].isLowSurrogate() && position > 0 && text[position - 1].isHighSurrogate();
    return isSecondHalf ? position - 1 : position;
}

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

qint64 startOfCharacter(QByteArrayView utf8, qint64 position)
{
    qint64 start = position;
    while (start > 0 && position - start < 3 && isContinuation(utf8[start]))
        --start;
    return start;
}

Character characterAt(QByteArrayView utf8, qint64 position)
{
    const auto lead = static_cast<unsigned char>(utf8[position]);
    qint64 end = position + 1;
    if (lead < 0xC0)
        return {lead, end};
    char32_t codePoint = lead < 0xE0 ? lead & 0x1F : lead < 0xF0 ? lead & 0x0F : lead & 0x07;
    for (; end < utf8.size() && isContinuation(utf8[end]); ++end)
        codePoint = codePoint << 6 | (static_cast<unsigned char>(utf8[end]) & 0x3F);
    return {codePoint, end};
}

/// Of the character that the position lies in or before.
template <typename View>
bool isWordAt(View text, qint64 position)
{
    return isWordCharacter(characterAt(text, startOfCharacter(text, position)).codePoint);
}

template <typename View>
bool isWhole(View text, TextRange range)
{
    if (range.length == 0)
        return true;
    const bool isTouchedBefore =
        range.location > 0 && isWordAt(text, range.location) && isWordAt(text, range.location - 1);
    return !isTouchedBefore &&
           !(range.end() < text.size() && isWordAt(text, range.end() - 1) && isWordAt(text, range.end()));
}

template <typename View>
qint64 positionBehind(View text, TextRange range)
{
    Character character = characterAt(text, startOfCharacter(text, range.location));
    qint64 end = character.end;
    while (end < text.size() && isWordCharacter(character.codePoint)) {
        character = characterAt(text, end);
        if (isWordCharacter(character.codePoint))
            end = character.end;
    }
    return qMax(end, range.location + 1);
}

} // namespace

bool isWordCharacter(char32_t codePoint)
{
    if (codePoint < 0x80)
        return (codePoint >= '0' && codePoint <= '9') || (codePoint >= 'A' && codePoint <= 'Z') ||
               (codePoint >= 'a' && codePoint <= 'z') || codePoint == '_';
    return (U_GET_GC_MASK(UChar32(codePoint)) & (U_GC_L_MASK | U_GC_M_MASK | U_GC_ND_MASK)) != 0;
}

bool isWholeWord(QStringView text, TextRange range)
{
    return isWhole(text, range);
}

bool isWholeWord(QByteArrayView utf8, TextRange range)
{
    return isWhole(utf8, range);
}

qint64 positionBehindFailedWord(QStringView text, TextRange range)
{
    return positionBehind(text, range);
}

qint64 positionBehindFailedWord(QByteArrayView utf8, TextRange range)
{
    return positionBehind(utf8, range);
}

} // namespace tidemark
