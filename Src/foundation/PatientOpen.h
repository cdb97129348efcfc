#pragma once

#include "foundation/StopFlag.h"

#include <cerrno>
#include <chrono>
#include <sys/resource.h>
#include <thread>

namespace tidemark {

/// Whether opening failed only because too many files are open.
inline bool lacksDescriptors(int errorNumber)
{
    return errorNumber == EMFILE || errorNumber == ENFILE;
}

/// How many descriptors this process may have open.
inline rlim_t mostDescriptors()
{
    rlimit limit = {};
    return ::getrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_cur : 1024;
}

/// The descriptor that `open` returns, or -1 and errno. While too many files are open it is called again, for
/// two seconds or until a stop is asked for: other threads soon close what they read.
template <typename Open>
int openPatiently(const Open &open)
{
    using namespace std::chrono_literals;
    int descriptor = open();
    for (auto pause = 1ms; descriptor < 0 && lacksDescriptors(errno) && pause < 1s; pause *= 2) {
        const int failure = errno;
        try {
            checkForStop();
        } catch (const WorkStopped &) {
            errno = failure;
            return -1;
        }
        std::this_thread::sleep_for(pause);
        descriptor = open();
    }
    return descriptor;
}

} // namespace tidemark
