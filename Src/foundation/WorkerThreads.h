#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tidemark {

/// Starts a thread and adds it to the list. False, with the list as it was, when the system gives no more
/// threads.
bool startThread(std::vector<std::thread> &threads, std::function<void()> body);

/// A few threads that take up tasks in the order in which they were given. Where the system gives fewer
/// threads, those do the work; where it gives none, start() does each task itself before it returns. Tasks
/// must not throw. Used from one thread.
class WorkerThreads
{
public:
    explicit WorkerThreads(int count);
    /// Waits until every task is done.
    ~WorkerThreads();
    WorkerThreads(const WorkerThreads &) = delete;
    WorkerThreads &operator=(const WorkerThreads &) = delete;

    void start(std::function<void()> task);

private:
    void _run();
    void _runNextTask();

    std::mutex _mutex;
    std::condition_variable _changed;
    std::deque<std::function<void()>> _tasks;
    bool _isEnding = false;
    std::vector<std::thread> _threads; ///< made with the first task
    int _count;
};

/// At least one.
int processorCount();

/// Calls `work`, which must not throw, with each number below `count`, on so many threads, this one included.
/// Returns when all of it is done.
void doInParallel(int threads, size_t count, const std::function<void(size_t)> &work);

/// Counts steps that other threads have done.
class StepCounter
{
public:
    void add();
    /// Waits until `count` steps are done and takes them off. False, with nothing taken, when that takes
    /// longer than `longest`.
    bool take(int count, std::chrono::milliseconds longest);

private:
    std::mutex _mutex;
    std::condition_variable _changed;
    int _count = 0;
};

} // namespace tidemark
