#pragma once

#include <atomic>

namespace tidemark {

/// What the threads that search one file tell each other, and others tell them. Any thread.
class FileSearchState
{
public:
    /// Another file, or the same once more. Stops stay.
    void startAfresh() { _hasLongLines = _hasFound = false; }

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

} // namespace tidemark
