#pragma once

#include "foundation/TDError.h"
#include "foundation/TDFileCommon.h"
#include "matching/TDFindResultItem.h"
#include "reading/FileToRead.h"
#include "search/SearchPipeline.h"

#include <QString>

#include <memory>
#include <optional>

namespace tidemark {

class TextBlockReader;

/// Null when every line was searched to its end.
TDError errorOfLimits(const FilePath &path, const FileMatches::LimitedLines &lines);

/// A file's node with its match lines, and below them the error, if there is one. Without a date the file is
/// asked for it.
std::shared_ptr<TDFindResultItem> newFileNode(const FileToRead &file, const QString &findText,
                                              std::optional<FileDate> date, bool includesBOM,
                                              const FileMatches &matches, const TDError &limitError);

/// Hands over in parts what is found in one large file while it is searched. One thread at a time; what it is
/// given must stay as long as it.
class PartsOfFile
{
public:
    PartsOfFile(const FileToRead &file, const QString &findText, TextBlockReader &reader,
                const HandOverPart &handOver)
        : _file(file), _findText(findText), _reader(reader), _handOver(handOver)
    {}

    /// Whether something was handed over. Those that finish the file are for such a one.
    bool areThere() const { return _node != nullptr; }

    void handOver(const FileMatches &matches);
    /// `isAll`: the matches are those of the whole file, which was searched anew, and take the place of what
    /// was handed over.
    void handOverRest(const FileMatches &matches, const TDError &limitError, bool isAll);
    /// Takes the place of what was handed over.
    void handOverFailure(const TDError &error);
    /// The file is as one in which nothing was found.
    void takeBack();

private:
    const FileToRead &_file;
    const QString &_findText;
    TextBlockReader &_reader;
    const HandOverPart &_handOver;
    /// Another's once it is handed over.
    std::shared_ptr<TDFindResultItem> _node;
};

} // namespace tidemark
