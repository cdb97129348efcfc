#include "matching/RegularExpression.h"

#include "foundation/AbandonableWork.h"
#include "foundation/LocalizedText.h"
#include "matching/BoundedSearch.h"
#include "matching/ExpressionComplexity.h"

#include <locale>

namespace tidemark {

boost::regex compiledExpression(QByteArrayView pattern, CaseRule caseRule)
{
    if (ExpressionComplexity(pattern).isTooComplexToCompile)
        throw ExpressionLimitReached();
    boost::regex expression;
    expression.imbue(std::locale::classic());
    boost::regex::flag_type flags = boost::regex::perl;
    if (caseRule == CaseRule::Ignore)
        flags |= boost::regex::icase;
    expression.assign(pattern.begin(), pattern.end(), flags);
    return expression;
}

TDError searchError(ExpressionFault fault, const QString &findText)
{
    return TDError::initalizePresentErrorWithCode(
        TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR,
        formatted(localizedString("Sorry, a problem occured whilst attempting to search using the regular "
                                  "expression ‘%@’."),
                  {findText}),
        fault == ExpressionFault::Malformed
            ? localizedString("The find text regular expression is malformed.")
            : localizedString("The find text regular expression caused an internal error."),
        recoverySuggestionForExpression(fault));
}

boost::regex compiledExpressionAbandonably(const QByteArray &pattern, CaseRule caseRule)
{
    const auto compile = [pattern, caseRule] { return compiledExpression(pattern, caseRule); };
    std::optional<boost::regex> compiled = resultOfAbandonable(compile, LONGEST_COMPILATION);
    if (!compiled)
        throw ExpressionLimitReached();
    return *compiled;
}

// The texts for the two faults differ in a blank only; both are used as they stand.

QString recoverySuggestionForExpression(ExpressionFault fault)
{
    return fault == ExpressionFault::Malformed
               ? localizedString("Review the regular expression in the find text field and ensure it is "
                                 "valid. Or uncheck the "
                                 "Regular expression checkbox if you want to perform a normal text search.")
               : localizedString("Review the regular expression in the find text field and ensure it is "
                                 "valid.  Or uncheck the "
                                 "Regular expression checkbox if you want to perform a normal text search.");
}

QString recoverySuggestionForFormat(ExpressionFault fault)
{
    return fault == ExpressionFault::Malformed
               ? localizedString(
                     "Review the find and replace text fields and ensure they are valid. Or uncheck the "
                     "Regular expression checkbox if you want to perform a normal text search.")
               : localizedString(
                     "Review the find and replace text fields and ensure they are valid.  Or uncheck the "
                     "Regular expression checkbox if you want to perform a normal text search.");
}

} // namespace tidemark
