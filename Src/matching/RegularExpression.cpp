#include "matching/RegularExpression.h"

#include <locale>

namespace tidemark {

boost::regex compiledExpression(QByteArrayView pattern, CaseRule caseRule)
{
    boost::regex expression;
    expression.imbue(std::locale::classic());
    boost::regex::flag_type flags = boost::regex::perl;
    if (caseRule == CaseRule::Ignore)
        flags |= boost::regex::icase;
    expression.assign(pattern.begin(), pattern.end(), flags);
    return expression;
}

} // namespace tidemark
