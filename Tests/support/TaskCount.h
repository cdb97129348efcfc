#pragma once

#include <filesystem>
#include <iterator>

namespace tidemark::test {

/// How many threads this process has; one that was joined may take a moment to go.
inline int taskCount()
{
    return int(std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}));
}

} // namespace tidemark::test
