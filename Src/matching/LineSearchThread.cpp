#include "matching/LineSearchThread.h"

namespace tidemark {

namespace {

constexpr size_t MOST_BYTES_WAITING = 1 << 22;

} // namespace

void LineBatch::add(QByteArrayView line, qint64 lineNumber)
{
    const auto start = qsizetype(bytes.size());
    bytes.insert(bytes.end(), line.begin(), line.end());
    lines.push_back({start, start + line.size()});
    lineNumbers.push_back(lineNumber);
}

LineSearchThread::LineSearchThread(Search search) : _search(std::move(search)), _thread([this] { _run(); }) {}

LineSearchThread::~LineSearchThread()
{
    {
        const std::lock_guard lock(_mutex);
        _isEnding = true;
    }
    _changed.notify_all();
    _thread.join();
}

void LineSearchThread::add(LineBatch batch)
{
    std::unique_lock lock(_mutex);
    _changed.wait(lock, [this] { return _bytesWaiting < MOST_BYTES_WAITING; });
    _bytesWaiting += batch.bytes.size();
    _waiting.push_back(std::move(batch));
    _changed.notify_all();
}

void LineSearchThread::_run()
{
    std::unique_lock lock(_mutex);
    for (;;) {
        _changed.wait(lock, [this] { return _isEnding || !_waiting.empty(); });
        if (_waiting.empty())
            return;
        const LineBatch batch = std::move(_waiting.front());
        _waiting.pop_front();
        _bytesWaiting -= batch.bytes.size();
        _changed.notify_all();
        lock.unlock();
        _search(batch);
        lock.lock();
    }
}

} // namespace tidemark
