// Any content of the settings file can be read, and what is stored then is kept.

#include "Fuzzing.h"

#include "foundation/UserDefaults.h"
#include "search/Kind.h"
#include "search/RegisterUserDefaults.h"

#include <QRect>

namespace tidemark::fuzz {

namespace {

using namespace Qt::Literals::StringLiterals;

const QString KEYS[] = {TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION,
                        TD_USER_DEFAULTS_NAME_IGNORE_CASE,
                        TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING,
                        TD_USER_DEFAULTS_NAME_FIND_TEXT,
                        u"IncludedKinds2"_s,
                        u"searchPaths"_s};

} // namespace

void run(Input &input)
{
    const QString value = QString::fromUtf8(input.line());
    const FilePath path = writeFile("settings.ini", input.rest());
    const TimeLimit limit;
    {
        const auto settings = UserDefaults::atPath(path.displayText());
        registerUserDefaults(*settings);
        for (const QString &key : KEYS) {
            settings->boolForKey(key);
            settings->integerForKey(key);
            settings->stringForKey(key);
            unarchivedKinds(settings->objectForKey(key).toByteArray());
        }
        settings->setObject(TD_USER_DEFAULTS_NAME_FIND_TEXT, value);
        settings->setObject(TD_USER_DEFAULTS_NAME_IGNORE_CASE, true);
        require(settings->synchronize(), "settings can be written");
    }
    const auto settings = UserDefaults::atPath(path.displayText());
    require(settings->stringForKey(TD_USER_DEFAULTS_NAME_FIND_TEXT) == value, "a text is kept");
    require(settings->boolFor(BooleanSetting::IgnoreCase), "a setting is kept");
    limit.check("settings are read soon", 0.5);
}

} // namespace tidemark::fuzz
