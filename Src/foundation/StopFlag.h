#pragma once

#include <atomic>

namespace tidemark {

/// Thrown by checkForStop(), past everything between it and whoever opened the StopScope.
struct WorkStopped
{};

/// While it lives, long work on this thread may be broken off by setting one of the flags, from any thread.
/// The flags aren't owned; either may be null. A scope within another takes its place until it ends.
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

/// To be called every few milliseconds by work whose length depends on the user's data, and not at all by
/// such work that is soon done: who asks for little need not reckon with an exception. Throws WorkStopped
/// when the work is to be broken off, which outside any scope it never is.
void checkForStop();

/// How much work, in bytes or in UTF-16 units, is done between two checks.
inline constexpr long long WORK_BETWEEN_STOP_CHECKS = 1 << 20;

} // namespace tidemark
