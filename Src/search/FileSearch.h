#pragma once

#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "matching/TDFindResultItem.h"
#include "matching/TDMatchLineHighlighter.h"
#include "reading/FileToRead.h"
#include "search/PartsOfFile.h"
#include "search/SearchPipeline.h"
#include "search/SearchedFiles.h"
#include "text/TextEncoding.h"

#include <QHash>
#include <QString>

#include <atomic>
#include <memory>
#include <optional>

namespace tidemark {

class SearchContext;

/// What the files of one search share. Nothing of it is owned.
struct FileSearchTerms
{
    const QString &findText; ///< for the nodes; what is searched for is the context's pattern
    const QHash<FilePath, StringEncoding> &chosenEncodings;
    SearchedFiles &searchedFiles;
    const std::atomic<bool> &shouldStop;
};

/// The search of one file, from its bytes to its node. One thread at a time; what it is given must stay as
/// long as it.
class FileSearch
{
public:
    FileSearch(const FileSearchTerms &terms, const FileToRead &file, SearchContext &context,
               const HandOverPart &handOver);

    /// A file node; nothing when there is no match, the search was stopped, or everything was handed over in
    /// parts. On a failure the error is set, and the node returned tells it, but for a faulty expression, for
    /// which there is none.
    std::shared_ptr<TDFindResultItem> run(TDError &error);

private:
    std::shared_ptr<TDFindResultItem> _failed(TDError &error);
    std::shared_ptr<TDFindResultItem> _found(FileMatches matches, TDError &error);
    std::shared_ptr<TDFindResultItem> _newFailure(SettledEncoding encoding, const TDError &error) const;
    SettledEncoding _noteSource(SettledEncoding encoding) const;
    bool _isFirstFailure() const;

    const FileSearchTerms _terms;
    const FileToRead &_file;
    SearchContext &_context;
    TDMatchLineHighlighter _highlighter;
    PartsOfFile _parts;
    const std::optional<StringEncoding> _chosenEncoding;
};

} // namespace tidemark
