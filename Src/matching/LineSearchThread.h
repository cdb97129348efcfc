#pragma once

#include "matching/LinePrefilter.h"

#include <QByteArrayView>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tidemark {

/// Lines of a block that are to be searched, as copies.
struct LineBatch
{
    std::vector<char> bytes;     ///< of the lines, one behind the other
    std::vector<LineSpan> lines; ///< in `bytes`; empty for every line of them
    std::vector<qint64> lineNumbers; ///< one for each of `lines`, or that of the first line of all

    void add(QByteArrayView line, qint64 lineNumber);
};

/// Searches lines of a large file on a thread of its own, batch by batch in the order given, while the thread
/// that reads the file chooses further ones.
class LineSearchThread
{
public:
    /// Called on that thread; must not throw.
    using Search = std::function<void(const LineBatch &batch)>;

    explicit LineSearchThread(Search search);
    /// Waits until all batches are done.
    ~LineSearchThread();
    LineSearchThread(const LineSearchThread &) = delete;
    LineSearchThread &operator=(const LineSearchThread &) = delete;

    /// Waits while much is waiting.
    void add(LineBatch batch);

private:
    void _run();

    Search _search;
    std::mutex _mutex;
    std::condition_variable _changed;
    std::deque<LineBatch> _waiting;
    size_t _bytesWaiting = 0; ///< in `_waiting`
    bool _isEnding = false;
    std::thread _thread;
};

} // namespace tidemark
