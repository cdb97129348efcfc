#include "foundation/ProcessUse.h"

#include <ctime>
#include <sys/resource.h>

namespace tidemark {

ProcessUse ProcessUse::now()
{
    timespec time = {};
    rusage usage = {};
    (void)::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    (void)::getrusage(RUSAGE_SELF, &usage);
    return {std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec), usage.ru_inblock};
}

} // namespace tidemark
