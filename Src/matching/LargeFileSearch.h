#pragma once

#include "foundation/TDError.h"
#include "matching/FileMatches.h"
#include "reading/BlockDecoder.h"
#include "reading/TextBlockReader.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace tidemark {

class FileSearchState;
class SearchContext;

/// Searches the rest of a large file on several threads. They take turns in reading blocks, search them at
/// the same time, and put what they find together in the order of the file.
class LargeFileSearch
{
public:
    using PartReceiver = std::function<void(FileMatches)>;

    /// The context's reader stands at the line with the number, and `found` is what comes in front of it. The
    /// others must outlive the object; `error` is null.
    LargeFileSearch(SearchContext &context, FileSearchState &state, const FileMatches &found,
                    qint64 lineNumber, TDError &error);

    /// Returns at the end of the file, at a stop, with the error set, or with what the reader says against
    /// searching in blocks. The receiver is given what was found, without what is told of limited lines, on
    /// this thread every few milliseconds; there may be none. No part comes behind a failure.
    TextBlockReader::Outcome run(const PartReceiver &receiver);
    /// What the receiver wasn't given.
    FileMatches takeRest() { return std::exchange(_found, {}); }

private:
    using Clock = std::chrono::steady_clock;
    using Outcome = TextBlockReader::Outcome;
    /// A stretch of whole lines.
    struct Block
    {
        quint64 number = 0;
        TextBlockReader::Buffer buffer;
        QByteArrayView bytes;
    };
    struct Searched
    {
        Outcome outcome = Outcome::Block;
        qint64 lineCount = 0;
        FileMatches matches; ///< their lines counted from 0 on
        TDError error;
    };

    void _searchOnThisThread();
    void _searchBlocks(SearchContext &context);
    bool _readNext(Block &block);
    void _put(quint64 number, Searched searched);
    void _append(Searched &searched);
    void _handOver();

    SearchContext &_context;
    FileSearchState &_state;
    TDError &_error;
    PartReceiver _receiver;
    const std::thread::id _caller;

    std::mutex _reading; ///< guards the context's reader and these
    quint64 _nextNumber = 0;
    bool _isRead = false;

    std::mutex _merging;                  ///< guards what follows while the threads run
    std::map<quint64, Searched> _waiting; ///< for those in front of them
    quint64 _nextToAppend = 0;
    qint64 _lineNumber;
    FileMatches _found;
    Outcome _outcome = Outcome::Block; ///< something else ends the search
    Clock::time_point _due;            ///< of the next part
    std::atomic<bool> _hasEnded = false;
};

} // namespace tidemark
