#pragma once

#include <QByteArrayView>

namespace tidemark {

/// What can be told of the time an expression takes without compiling it.
struct ExpressionComplexity
{
    explicit ExpressionComplexity(QByteArrayView expression);

    /// Whether the library could take long to compile the expression, or for ever, or more stack than there
    /// is. It looks for the first characters of matches along every way through alternatives that match
    /// nothing themselves, and for the length of what each look-behind looks at along every way through all
    /// alternatives in it: twice as many with each group.
    bool isTooComplexToCompile = false;

    /// Lines of up to so many bytes are searched soon, however unlucky the line; 0 where that can't be told.
    qsizetype harmlessLineSize = 0;
};

} // namespace tidemark
