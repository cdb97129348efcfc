#include "search/RegisterUserDefaults.h"

#include "foundation/UserDefaults.h"
#include "search/Kind.h"
#include "text/TextEncoding.h"

namespace tidemark {

void registerUserDefaults(UserDefaults &store)
{
    store.registerDefaults({
        {TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, false},
        {TD_USER_DEFAULTS_NAME_UNICODE_REGULAR_EXPRESSION, false},
        {TD_USER_DEFAULTS_NAME_WHOLE_WORDS, false},
        {TD_USER_DEFAULTS_NAME_IGNORE_CASE, true},
        {TD_USER_DEFAULTS_NAME_FIND_REPLACE_TEXT_HISTORY_MAXIMUM, 100},
        {TD_USER_DEFAULTS_NAME_AUTO_DETECT_FILE_ENCODING_FROM_FILE, true},
        {TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, TD_ENCODING_UTF8},
        {TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, true},
        {TD_USER_DEFAULTS_NAME_EXPAND_RESULTS, true},
        {TD_USER_DEFAULTS_NAME_RESULTS_FONT, QString()},
        {TD_USER_DEFAULTS_NAME_RESULTS_FONT_SIZE, 0},
        {TD_USER_DEFAULTS_NAME_SHOW_CONTEXT, false},
        {TD_USER_DEFAULTS_NAME_SHOW_ENCODINGS, false},
        {TD_USER_DEFAULTS_NAME_EDITOR, QStringLiteral("desktop")},
        {TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS, QString()},
        {TD_USER_DEFAULTS_NAME_SEARCH_HIDDEN_FILES, false},
        {TD_USER_DEFAULTS_NAME_OBEY_IGNORE_FILES, false},
        {TD_USER_DEFAULTS_NAME_LARGEST_FILE_SIZE, 0},
        {TD_USER_DEFAULTS_NAME_UNDO_JOURNAL_SIZE, 200},
        {kmIncludedKinds2Pref, archivedKinds(Kind::defaultKinds())},
        {QStringLiteral("UpdatesAvailableTrayIconEnabled"), true},
        {QStringLiteral("CrashReportsTrayIconEnabled"), true},
    });
}

} // namespace tidemark
