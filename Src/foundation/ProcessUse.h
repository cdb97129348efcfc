#pragma once

#include <chrono>

namespace tidemark {

/// What all threads of the process have used until now.
struct ProcessUse
{
    std::chrono::nanoseconds processorTime{0};
    long blocksRead = 0; ///< from disks, not from memory; 0 where the system doesn't tell

    static ProcessUse now();
};

} // namespace tidemark
