#include "text/CharacterSets.h"

#include <QChar>

namespace tidemark {

bool isNewlineCharacter(char16_t unit)
{
    return (unit >= u'\x0A' && unit <= u'\x0D') || unit == u'\x85' || unit == u'\x2028' || unit == u'\x2029';
}

bool isControlCharacter(char32_t codePoint)
{
    const QChar::Category category = QChar::category(codePoint);
    return category == QChar::Other_Control || category == QChar::Other_Format;
}

TextRange rangeWithoutNewlinesAtEnds(QStringView text)
{
    qsizetype start = 0;
    qsizetype end = text.size();
    while (start < end && isNewlineCharacter(text[start].unicode()))
        ++start;
    while (end > start && isNewlineCharacter(text[end - 1].unicode()))
        --end;
    return {start, end - start};
}

} // namespace tidemark
