#pragma once

#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "foundation/TDFileCommon.h"
#include "matching/FileMatches.h"
#include "matching/FileSearchState.h"
#include "matching/MatchCollector.h"
#include "matching/TDFindPattern.h"
#include "reading/FileToRead.h"
#include "reading/TextBlockReader.h"
#include "text/TextEncoding.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace tidemark {

class SearchContext;
class TDFileReader;

/// Searches one file after the other and hands over what it found in each. Used by one thread at a time, but
/// for the stop flag.
class TDMatchLineHighlighter
{
public:
    /// Searches the file from its first line on. True: matchLines() holds the match lines, possibly none.
    /// False: the error, which must be null on entry, tells why, and matches() means nothing but for the
    /// encoding, which is known if the file could be opened: what the reader reports; code 36 for a faulty
    /// expression, at the first line searched; code 1 for a file that has matches and a line over
    /// TD_LONGEST_LINE. A stopped file ends with true and no lines.
    bool processWithFile(const FilePath &path, StringEncoding encoding, TDError &error,
                         const TDFindPattern &pattern);
    /// The same result, in blocks as far as the file allows: most of a file without matches is never decoded.
    /// The context's pattern is what is searched for.
    bool processWithFile(const FileToRead &file, StringEncoding encoding, TDError &error,
                         SearchContext &context);
    /// The same with a find text that is compiled for this one file, read as the settings have it now.
    bool processWithFile(const FilePath &path, StringEncoding encoding, TDError &error, bool ignoreCase,
                         const QString &matchPattern);

    /// The first match within the range of the line, read as the settings have it now; the terms are those
    /// of FindKind.
    static TextRange firstRangeOfPatternInString(const QString &line, const QString &pattern,
                                                 CaseRule caseRule, TextRange searchRange, TDError &error);

    /// What the last call found.
    const FileMatches &matches() const { return _matches; }
    const MatchLines &matchLines() const { return _matches.lines; }
    FileMatches takeMatches() { return std::exchange(_matches, {}); }

    /// Is given lines of a large file while the rest is still searched, on the thread that called
    /// processWithFile(): what matches() holds in the end is what came behind them, unless
    /// wasSearchedAnew().
    void setPartReceiver(std::function<void(FileMatches)> receiver) { _partReceiver = std::move(receiver); }
    /// Whether what was handed over before counts no more: matches() holds everything, or there is an error.
    bool wasSearchedAnew() const { return _wasSearchedAnew; }

    /// From any thread: the file being searched is abandoned.
    void setShouldStop(bool shouldStop) { _state.setShouldStop(shouldStop); }
    bool shouldStop() const { return _state.shouldStop(); }
    /// A second flag to look at, that of the whole search. Not owned.
    void setSearchShouldStop(const std::atomic<bool> *flag) { _state.setSearchShouldStop(flag); }

    /// The file's date before it was read, where the last call came to know it.
    std::optional<FileDate> modificationDate() const { return _modificationDate; }

    bool includesBOM() const { return _includesBOM; }
    void setIncludesBOM(bool includesBOM) { _includesBOM = includesBOM; }

private:
    enum class BlockSearch { Done, NeedsLineReader };

    void _startAfresh(SettledEncoding encoding, bool includesBOM);
    bool _processByLines(const FileToRead &file, StringEncoding encoding, TDError &error,
                         SearchContext &context);
    void _searchLines(TDFileReader &reader, MatchCollector &collector, TDError &error);
    BlockSearch _searchBlocks(const FileToRead &file, StringEncoding encoding, TDError &error,
                              SearchContext &context);
    TextBlockReader::Outcome _searchOpened(SearchContext &context, TDError &error);
    TextBlockReader::Outcome _searchRest(SearchContext &context, qint64 lineNumber, TDError &error);
    void _take(FileMatches matches);
    bool _isThereSomethingToTell(BlockSearch outcome, const TDError &error) const;
    void _dropWhenStopped();

    FileMatches _matches;
    std::function<void(FileMatches)> _partReceiver;
    bool _wasSearchedAnew = false;
    FileSearchState _state;
    std::optional<FileDate> _modificationDate;
    bool _includesBOM = false;
};

} // namespace tidemark
