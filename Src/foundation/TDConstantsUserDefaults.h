#pragma once

#include <QString>

namespace tidemark {

inline const QString TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION = QStringLiteral("regularExpression");
inline const QString TD_USER_DEFAULTS_NAME_UNICODE_REGULAR_EXPRESSION =
    QStringLiteral("unicodeRegularExpression");
inline const QString TD_USER_DEFAULTS_NAME_WHOLE_WORDS = QStringLiteral("wholeWords");
inline const QString TD_USER_DEFAULTS_NAME_IGNORE_CASE = QStringLiteral("ignoreCase");
inline const QString TD_USER_DEFAULTS_NAME_FIND_REPLACE_TEXT_HISTORY_MAXIMUM =
    QStringLiteral("findReplaceTextHistoryMaximum");
inline const QString TD_USER_DEFAULTS_NAME_AUTO_DETECT_FILE_ENCODING_FROM_FILE =
    QStringLiteral("autoDetectFileEncodingFromFile");
inline const QString TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING = QStringLiteral("defaultStringEncoding");
inline const QString TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING =
    QStringLiteral("createBackupBeforeReplacing");
/// In MB of a million bytes; 0 or less: nothing is kept for undoing.
inline const QString TD_USER_DEFAULTS_NAME_UNDO_JOURNAL_SIZE = QStringLiteral("undoJournalSize");
inline const QString TD_USER_DEFAULTS_NAME_SEARCH_LOCATIONS = QStringLiteral("searchPaths");
inline const QString TD_USER_DEFAULTS_NAME_FIND_TEXT = QStringLiteral("findText");
inline const QString TD_USER_DEFAULTS_NAME_REPLACE_TEXT = QStringLiteral("replaceText");
inline const QString TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS = QStringLiteral("leaveOutPatterns");
inline const QString TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS_HISTORY =
    QStringLiteral("leaveOutPatternsHistory");
inline const QString TD_USER_DEFAULTS_NAME_SEARCH_HIDDEN_FILES = QStringLiteral("searchHiddenFiles");
inline const QString TD_USER_DEFAULTS_NAME_OBEY_IGNORE_FILES = QStringLiteral("obeyIgnoreFiles");
inline const QString TD_USER_DEFAULTS_NAME_LARGEST_FILE_SIZE = QStringLiteral("largestFileSize");
inline const QString TD_USER_DEFAULTS_NAME_FIND_TEXT_HISTORY = QStringLiteral("findTextHistory");
inline const QString TD_USER_DEFAULTS_NAME_REPLACE_TEXT_HISTORY = QStringLiteral("replaceTextHistory");
/// Files of a small search arrive expanded.
inline const QString TD_USER_DEFAULTS_NAME_EXPAND_RESULTS = QStringLiteral("expandResults");
/// The family that lines of files are shown in; empty: the platform's own with letters of one width.
inline const QString TD_USER_DEFAULTS_NAME_RESULTS_FONT = QStringLiteral("resultsFont");
/// In points; 0: as large as the texts around.
inline const QString TD_USER_DEFAULTS_NAME_RESULTS_FONT_SIZE = QStringLiteral("resultsFontSize");
/// Size, divider and columns of search windows, by screen.
inline const QString TD_USER_DEFAULTS_NAME_WINDOW_LAYOUTS = QStringLiteral("windowLayouts");
/// Which editor opens a file at a line: the id of a known one, "desktop" or "custom".
inline const QString TD_USER_DEFAULTS_NAME_EDITOR = QStringLiteral("editor");
/// The command of the custom one.
inline const QString TD_USER_DEFAULTS_NAME_EDITOR_COMMAND = QStringLiteral("editorCommand");
/// The file around the highlighted match stands under the results.
inline const QString TD_USER_DEFAULTS_NAME_SHOW_CONTEXT = QStringLiteral("showContext");
/// The results have a column that says in what each file was read.
inline const QString TD_USER_DEFAULTS_NAME_SHOW_ENCODINGS = QStringLiteral("showEncodings");
/// Until it is changed for the first time, replacements are shown where there is a replace text.
inline const QString TD_USER_DEFAULTS_NAME_SHOW_REPLACEMENTS = QStringLiteral("showReplacements");
inline const QString kmIncludedKinds2Pref = QStringLiteral("IncludedKinds2");
/// The key of an older format; neither read nor written.
inline const QString kmIncludedKindsPref = QStringLiteral("IncludedKinds");

} // namespace tidemark
