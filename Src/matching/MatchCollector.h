#pragma once

#include "foundation/TDError.h"
#include "matching/FileMatches.h"

#include <QByteArrayView>
#include <QStringView>

#include <atomic>

namespace tidemark {

class SearchContext;

/// The longest line that can be shown and replaced in, in UTF-16 units, line-end characters included.
inline constexpr qsizetype TD_LONGEST_LINE = 25000;

/// What the threads that search one file tell each other, and others tell them. Any thread.
class FileSearchState
{
public:
    void startAfresh();

    /// The file being searched is abandoned.
    void setShouldStop(bool shouldStop) { _shouldStop = shouldStop; }
    bool shouldStop() const { return _shouldStop || (_searchShouldStop != nullptr && *_searchShouldStop); }
    /// A second flag to look at, that of the whole search. Not owned; set before any search.
    void setSearchShouldStop(const std::atomic<bool> *flag) { _searchShouldStop = flag; }
    const std::atomic<bool> *shouldStopFlag() const { return &_shouldStop; }
    const std::atomic<bool> *searchShouldStopFlag() const { return _searchShouldStop; }

    void noteMatch() { _hasFound = true; }
    void noteLongLine() { _hasLongLines = true; }
    bool hasLongLines() const { return _hasLongLines; }
    /// The file's first match and its long lines are enough to report the file, so no more matches are kept.
    bool hasExcessiveMatch() const { return _hasLongLines && _hasFound; }

private:
    std::atomic<bool> _shouldStop = false;
    const std::atomic<bool> *_searchShouldStop = nullptr;
    std::atomic<bool> _hasLongLines = false; ///< over TD_LONGEST_LINE
    std::atomic<bool> _hasFound = false;
};

/// Searches lines of a file on one thread and collects those with matches. Both arguments must outlive it.
class MatchCollector
{
public:
    /// Drops what the context collected before.
    MatchCollector(SearchContext &context, FileSearchState &state);

    enum class LineCount { Needed, NotNeeded };
    /// Searches a block of whole lines in UTF-8, as far as its lines may match. The number of its first line
    /// becomes that of the line behind the block, where that is needed. On a failure, which is an
    /// expression's, the error is set and the number means nothing.
    void searchBlock(QByteArrayView block, qint64 &lineNumber, LineCount count, TDError &error);
    /// `bytes`: the line's UTF-8, or null where that isn't at hand.
    void searchLine(QStringView line, QByteArrayView bytes, qint64 lineNumber, TDError &error);

    /// What was found since the last call. Its encoding isn't known here.
    FileMatches take();

private:
    bool _searchCandidates(QByteArrayView block, qint64 &lineNumber, LineCount count, TDError &error);
    void _searchEveryLine(QByteArrayView block, qint64 &lineNumber, TDError &error);
    void _searchLineBytes(QByteArrayView bytes, qint64 lineNumber, TDError &error);
    void _addLine(QStringView line, QByteArrayView bytes, qint64 lineNumber);

    SearchContext &_context;
    FileSearchState &_state;
    FileMatches _matches; ///< but for the lines, which are the context's
};

} // namespace tidemark
