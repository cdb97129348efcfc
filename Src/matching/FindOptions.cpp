#include "matching/FindOptions.h"

#include "foundation/UserDefaults.h"

namespace tidemark {

FindOptions FindOptions::withUserDefaults()
{
    const bool ignoresCase = UserDefaults::standard().boolFor(BooleanSetting::IgnoreCase);
    return withUserDefaults(ignoresCase ? CaseRule::Ignore : CaseRule::Exact);
}

FindOptions FindOptions::withUserDefaults(CaseRule caseRule)
{
    const UserDefaults &settings = UserDefaults::standard();
    FindOptions options;
    options.caseRule = caseRule;
    if (settings.boolFor(BooleanSetting::RegularExpression))
        options.mode = settings.boolFor(BooleanSetting::UnicodeRegularExpression)
                           ? SearchMode::UnicodeExpression
                           : SearchMode::RegularExpression;
    options.wholeWords = settings.boolFor(BooleanSetting::WholeWords);
    return options;
}

} // namespace tidemark
