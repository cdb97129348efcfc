#include "foundation/AbandonableWork.h"

#include "foundation/StopFlag.h"

#include <atomic>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace tidemark {

namespace {

constexpr std::chrono::milliseconds BETWEEN_STOP_CHECKS(10);

std::atomic<int> abandonedWorks = 0;

struct Work
{
    std::mutex mutex;
    std::condition_variable ended;
    std::function<void()> run;
    std::exception_ptr thrown;
    bool hasEnded = false;
    bool isAbandoned = false;
};

void runOnThread(Work &work)
{
    std::exception_ptr thrown;
    try {
        work.run();
    } catch (...) {
        thrown = std::current_exception();
    }
    const std::lock_guard lock(work.mutex);
    work.run = nullptr;
    work.thrown = std::move(thrown);
    work.hasEnded = true;
    if (work.isAbandoned)
        --abandonedWorks;
    work.ended.notify_all();
}

} // namespace

bool runAbandonably(std::function<void()> work, std::chrono::milliseconds allowed)
{
    checkForStop();
    const auto shared = std::make_shared<Work>();
    shared->run = std::move(work);
    try {
        std::thread([shared] { runOnThread(*shared); }).detach();
    } catch (const std::system_error &) {
        // Without a thread there is nobody to leave behind.
        runOnThread(*shared);
    }

    const auto abandon = [&shared] {
        shared->isAbandoned = true;
        ++abandonedWorks;
    };
    const auto end = std::chrono::steady_clock::now() + allowed;
    std::unique_lock lock(shared->mutex);
    while (!shared->ended.wait_for(lock, BETWEEN_STOP_CHECKS, [&shared] { return shared->hasEnded; })) {
        try {
            checkForStop();
        } catch (const WorkStopped &) {
            abandon();
            throw;
        }
        if (std::chrono::steady_clock::now() > end) {
            abandon();
            return false;
        }
    }
    // Whoever catches it has it alone: this thread, or the other one, may be the last to let go of the work.
    if (shared->thrown)
        std::rethrow_exception(std::exchange(shared->thrown, nullptr));
    return true;
}

bool isAbandonedWorkRunning()
{
    return abandonedWorks > 0;
}

} // namespace tidemark
