#include "session/SearchTerms.h"

#include "foundation/UserDefaults.h"

namespace tidemark {

SearchTerms SearchTerms::withUserDefaults(const QString &findText)
{
    const UserDefaults &settings = UserDefaults::standard();
    return {findText, settings.boolForKey(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION),
            settings.boolForKey(TD_USER_DEFAULTS_NAME_IGNORE_CASE)};
}

} // namespace tidemark
