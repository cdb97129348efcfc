#include "matching/LargeFileSearch.h"

#include "foundation/StopFlag.h"
#include "foundation/WorkerThreads.h"
#include "matching/FileSearchState.h"
#include "matching/MatchCollector.h"
#include "matching/SearchContext.h"

#include <algorithm>
#include <new>
#include <utility>

namespace tidemark {

namespace {

/// Reading takes a fifth of the time of an easy search, and is done by one thread at a time.
constexpr int MOST_THREADS = 4;
constexpr std::chrono::milliseconds INTERVAL_OF_PARTS{10};

/// Reading a block takes less time than to sleep and be woken. Other threads get the processor meanwhile.
std::unique_lock<std::mutex> lockSoon(std::mutex &mutex)
{
    constexpr int MOST_TRIES = 200;
    std::unique_lock lock(mutex, std::try_to_lock);
    for (int tries = 1; !lock && tries < MOST_TRIES; ++tries) {
        std::this_thread::yield();
        (void)lock.try_lock();
    }
    if (!lock)
        lock.lock();
    return lock;
}

} // namespace

LargeFileSearch::LargeFileSearch(SearchContext &context, FileSearchState &state, const FileMatches &found,
                                 qint64 lineNumber, TDError &error)
    : _context(context), _state(state), _error(error), _caller(std::this_thread::get_id()),
      _lineNumber(lineNumber), _found(found)
{}

TextBlockReader::Outcome LargeFileSearch::run(const PartReceiver &receiver)
{
    _receiver = receiver;
    const int threads = std::min(processorCount(), MOST_THREADS);
    doInParallel(threads, size_t(threads), [this](size_t) { _searchOnThisThread(); });
    const bool isCutShort =
        _outcome == Outcome::Block && !_error && !_state.shouldStop() && !_state.hasExcessiveMatch();
    return isCutShort ? Outcome::NeedsLineReader : _outcome;
}

void LargeFileSearch::_searchOnThisThread()
{
    const StopScope scope(_state.shouldStopFlag(), _state.searchShouldStopFlag());
    try {
        if (std::this_thread::get_id() == _caller) {
            _searchBlocks(_context);
        } else {
            SearchContext own(_context.pattern());
            _searchBlocks(own);
        }
    } catch (const WorkStopped &) {
        // Every thread sees the flags, and the caller asks for them.
    } catch (const std::bad_alloc &) {
        // The line reader needs less.
        _hasEnded = true;
    }
}

void LargeFileSearch::_searchBlocks(SearchContext &context)
{
    BlockDecoder decoder;
    const bool canDecode = decoder.setEncoding(_context.reader().encoding().encoding);
    MatchCollector collector(context, _state);
    for (Block block; _readNext(block);) {
        Searched searched;
        QByteArrayView text;
        if (canDecode && decoder.toUtf8(block.bytes, text))
            collector.searchBlock(text, searched.lineCount, MatchCollector::LineCount::Needed,
                                  searched.error);
        else
            searched.outcome = Outcome::NeedsLineReader;
        searched.matches = collector.take();
        _put(block.number, std::move(searched));
        if (std::this_thread::get_id() == _caller)
            _handOver();
    }
}

/// False when there is nothing more to search.
bool LargeFileSearch::_readNext(Block &block)
{
    const std::unique_lock lock = lockSoon(_reading);
    if (_isRead || _hasEnded || _state.shouldStop() || _state.hasExcessiveMatch())
        return false;
    block.number = _nextNumber++;
    const Outcome outcome = _context.reader().takeBytes(block.buffer, block.bytes);
    if (outcome == Outcome::Block)
        return true;
    _isRead = true;
    _put(block.number, {.outcome = outcome, .matches = {}, .error = {}});
    return false;
}

void LargeFileSearch::_put(quint64 number, Searched searched)
{
    const std::unique_lock lock = lockSoon(_merging);
    _waiting.emplace(number, std::move(searched));
    for (auto next = _waiting.begin(); next != _waiting.end() && next->first == _nextToAppend;
         next = _waiting.erase(next), ++_nextToAppend) {
        if (!_hasEnded)
            _append(next->second);
    }
}

void LargeFileSearch::_append(Searched &searched)
{
    for (const auto &line : searched.matches.lines)
        line->setLineNumber(_lineNumber + line->lineNumber());
    if (searched.matches.limitedLines.count > 0)
        searched.matches.limitedLines.firstNumber += _lineNumber;
    _lineNumber += searched.lineCount;
    _found.add(std::move(searched.matches));
    _outcome = searched.outcome;
    _error = searched.error;
    _hasEnded = _outcome != Outcome::Block || _error;
}

void LargeFileSearch::_handOver()
{
    FileMatches part;
    {
        const std::lock_guard lock(_merging);
        const Clock::time_point now = Clock::now();
        if (!_receiver || _found.lines.isEmpty() || now < _due || _hasEnded || _state.shouldStop() ||
            _state.hasExcessiveMatch())
            return;
        _due = now + INTERVAL_OF_PARTS;
        part.lines = std::exchange(_found.lines, {});
        part.areBeyondAscii = _found.areBeyondAscii;
    }
    _receiver(std::move(part));
}

} // namespace tidemark
