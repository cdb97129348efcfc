#include "session/SearchTerms.h"

namespace tidemark {

SearchTerms SearchTerms::withUserDefaults(const QString &findText)
{
    return {findText, FindOptions::withUserDefaults()};
}

} // namespace tidemark
