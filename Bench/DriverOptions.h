#pragma once

#include "foundation/FilePath.h"
#include "search/Kind.h"
#include "text/TextEncoding.h"

#include <QList>
#include <QString>

#include <optional>

namespace tidemark {

struct DriverOptions
{
    QString findText;
    std::optional<QString> replaceText;
    QList<Kind> kinds;
    QString encoding = QStringLiteral("detect"); ///< or an IANA name
    /// In which files are read once more whose bytes are no text in theirs.
    std::optional<StringEncoding> readAs;
    QStringList leaveOutPatterns;
    qint64 largestFileSize = 0; ///< in bytes; 0: any size
    QList<FilePath> locations;
    FilePath recordFolder;      ///< empty: nothing is recorded
    FilePath interruptedFolder; ///< of the records to look into instead of searching; empty: search
    FilePath journalFolder;     ///< where what can be undone is kept; empty: nothing is
    /// What to do with the journal instead of searching.
    enum class Journal { None, Undo, Redo, History } journal = Journal::None;
    enum class Decision { None, PutBack, Keep } decision = Decision::None;
    int threads = 0; ///< 0: as many as suit the machine
    int repeat = 1;
    bool isRegularExpression = false;
    bool isUnicode = false;
    bool wholeWords = false;
    bool isCaseSensitive = false;
    bool includesSubFolders = true;
    bool makesBackups = true;
    bool searchesHiddenFiles = false;
    bool obeysIgnoreFiles = false;
    bool listsLines = false;
    bool listsErrors = false;
    bool isQuiet = false;
    bool printsJson = false;
    bool isPreview = false;
};

/// Nothing, with what is wrong in `problem`, when the arguments aren't understood. Arguments that name files
/// are taken as bytes.
std::optional<DriverOptions> parseArguments(const QList<QByteArray> &arguments, QByteArray &problem);

extern const char *const DRIVER_USAGE;

} // namespace tidemark
