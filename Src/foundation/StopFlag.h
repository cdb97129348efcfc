#pragma once

#include <atomic>

namespace tidemark {

/// Thrown by checkForStop(); to be caught by whoever opened the StopScope.
struct WorkStopped
{};

/// While it lives, setting one of the flags, from any thread, breaks off long work on this thread. The flags
/// aren't owned; either may be null. An inner scope stands in for the outer one until it ends.
class StopScope
{
public:
    StopScope(const std::atomic<bool> *first, const std::atomic<bool> *second);
    ~StopScope();
    StopScope(const StopScope &) = delete;
    StopScope &operator=(const StopScope &) = delete;

private:
    friend void checkForStop();
    const std::atomic<bool> *_first;
    const std::atomic<bool> *_second;
    const StopScope *_outer;
};

/// Throws WorkStopped when work on this thread is to be broken off; never outside a scope. Work whose length
/// depends on the user's data calls it every few milliseconds. Work that is soon done doesn't call it at all,
/// so that its callers need not expect the exception.
void checkForStop();

/// How much work, in bytes or in UTF-16 units, is done between two checks.
inline constexpr long long WORK_BETWEEN_STOP_CHECKS = 1 << 20;

} // namespace tidemark
