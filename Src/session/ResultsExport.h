#pragma once

#include "matching/TDFindResultItem.h"
#include "replace/TDReplacement.h"

#include <QByteArray>
#include <QIODevice>

#include <functional>
#include <optional>

namespace tidemark {

/// One match, as it is listed now.
struct ListedMatch
{
    FilePath path;
    qint64 lineNumber = 0; ///< 1-based
    TextRange range;       ///< of the line, in UTF-16 units
    QString line;          ///< without its line end
    /// What the match would be replaced with; nothing where that can't be told.
    std::optional<QString> replacement;
    QString replacementProblem; ///< why, for people
};

/// The formats in which results leave the program. All are UTF-8, one match a row;
/// in text and lists of paths these are the bytes that they are.
enum class ResultsFormat {
    Text,      ///< path:line:column:text; column counts UTF-16 units from 1
    Paths,     ///< each file once
    Markdown,  ///< a list of the files, the lines below them
    Csv,       ///< RFC 4180 with a byte-order mark and names of columns
    JsonLines, ///< an object a match; with the path's bytes, percent-encoded, where it isn't UTF-8
};

/// Writes listed matches, file by file. No two of its calls at a time; the matches may not change meanwhile.
class ResultsExport
{
public:
    /// `replacement` must outlive the object; null: nothing is said of replacements. The device is open.
    ResultsExport(ResultsFormat format, const TDReplacement *replacement, QIODevice &device);

    /// Asked between files and now and then within one, with how many are written; true ends the writing.
    using IsStopped = std::function<bool(qsizetype filesWritten)>;

    /// Files with lines of theirs, as filesAndLines() or a selection gives them: of a file without any behind
    /// it, all are meant. False when it was stopped or the device took no more.
    bool write(const FindResultItems &nodes, const IsStopped &isStopped = {});

private:
    void _beginFile(const TDFindResultItem &file);
    void _writeLine(const TDFindResultItem &file, const TDMatchLine &line);
    void _writeMatch(const ListedMatch &match);
    bool _flush();

    const ResultsFormat _format;
    const TDReplacement *_replacement;
    QIODevice &_device;
    QByteArray _pending;
    QString _encoding; ///< of the file in hand
    IsStopped _isStopped;
    qsizetype _filesBegun = 0;
    bool _hasEnded = false; ///< stopped, or the device took no more
};

} // namespace tidemark
