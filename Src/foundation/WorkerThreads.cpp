#include "foundation/WorkerThreads.h"

#include <algorithm>
#include <atomic>
#include <system_error>

namespace tidemark {

bool startThread(std::vector<std::thread> &threads, std::function<void()> body)
{
    try {
        threads.emplace_back(std::move(body));
        return true;
    } catch (const std::system_error &) {
        return false;
    }
}

WorkerThreads::WorkerThreads(int count) : _count(count) {}

WorkerThreads::~WorkerThreads()
{
    {
        const std::lock_guard lock(_mutex);
        _isEnding = true;
    }
    _changed.notify_all();
    for (std::thread &thread : _threads)
        thread.join();
}

void WorkerThreads::start(std::function<void()> task)
{
    {
        const std::lock_guard lock(_mutex);
        _tasks.push_back(std::move(task));
    }
    while (int(_threads.size()) < _count && startThread(_threads, [this] { _run(); })) {
    }
    if (_threads.empty())
        _runNextTask();
    else
        _changed.notify_one();
}

void WorkerThreads::_run()
{
    for (;;) {
        {
            std::unique_lock lock(_mutex);
            _changed.wait(lock, [this] { return _isEnding || !_tasks.empty(); });
            if (_tasks.empty())
                return;
        }
        _runNextTask();
    }
}

void WorkerThreads::_runNextTask()
{
    std::function<void()> task;
    {
        const std::lock_guard lock(_mutex);
        if (_tasks.empty())
            return;
        task = std::move(_tasks.front());
        _tasks.pop_front();
    }
    task();
}

int processorCount()
{
    return std::max(1, int(std::thread::hardware_concurrency()));
}

void doInParallel(int threads, size_t count, const std::function<void(size_t)> &work)
{
    std::atomic<size_t> next = 0;
    const auto run = [&] {
        for (size_t number = next++; number < count; number = next++)
            work(number);
    };
    WorkerThreads others(threads - 1);
    for (int other = 1; other < threads; ++other)
        others.start(run);
    run();
}

void StepCounter::add()
{
    const std::lock_guard lock(_mutex);
    ++_count;
    // Still locked: whoever waits may destroy the counter next.
    _changed.notify_all();
}

bool StepCounter::take(int count, std::chrono::milliseconds longest)
{
    std::unique_lock lock(_mutex);
    if (!_changed.wait_for(lock, longest, [&] { return _count >= count; }))
        return false;
    _count -= count;
    return true;
}

} // namespace tidemark
