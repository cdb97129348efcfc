#pragma once

#include <QString>

namespace tidemark {

class UserDefaults;

/// Adds the texts of a search that starts, and the patterns of what it leaves out, to the lists of earlier
/// ones, which all windows share.
void saveFindReplaceTextHistory(UserDefaults &settings, const QString &findText, const QString &replaceText);
/// Most recent first, each text once, an empty text never; no longer than the stored maximum, if there is
/// one.
void addStringToHistoryArrayForKey(UserDefaults &settings, const QString &text, const QString &key);

} // namespace tidemark
