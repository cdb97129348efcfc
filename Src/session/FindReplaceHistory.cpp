#include "session/FindReplaceHistory.h"

#include "foundation/UserDefaults.h"

#include <QStringList>

namespace tidemark {

void saveFindReplaceTextHistory(UserDefaults &settings, const QString &findText, const QString &replaceText)
{
    addStringToHistoryArrayForKey(settings, findText, TD_USER_DEFAULTS_NAME_FIND_TEXT_HISTORY);
    addStringToHistoryArrayForKey(settings, replaceText, TD_USER_DEFAULTS_NAME_REPLACE_TEXT_HISTORY);
    addStringToHistoryArrayForKey(settings, settings.stringForKey(TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS),
                                  TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS_HISTORY);
}

void addStringToHistoryArrayForKey(UserDefaults &settings, const QString &text, const QString &key)
{
    if (text.isEmpty())
        return;
    QStringList history = settings.objectForKey(key).toStringList();
    history.removeAll(text);
    history.prepend(text);
    const QString maximumKey = TD_USER_DEFAULTS_NAME_FIND_REPLACE_TEXT_HISTORY_MAXIMUM;
    const quint64 maximum = quint64(settings.integerForKey(maximumKey));
    if (settings.objectForKey(maximumKey).isValid() && quint64(history.size()) > maximum)
        history.resize(qsizetype(maximum));
    settings.setObject(key, history);
}

} // namespace tidemark
