#include "matching/TDFindPattern.h"

#include "matching/UnicodeExpression.h"

namespace tidemark {

QList<TextRange> TDFindPattern::Line::groups()
{
    QList<TextRange> groups;
    const int count = _kind.expression() != nullptr ? _kind.expression()->groupCount() + 1 : 0;
    groups.reserve(count);
    for (int group = 0; group < count; ++group) {
        const TextRange range = UnicodeExpression::groupRange(group);
        groups << (range.isFound() ? _line.unitsOf(range) : range);
    }
    return groups;
}

} // namespace tidemark
