#include "foundation/FreedMemory.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <cstdlib>

namespace tidemark {

void joinFreedMemoryAtOnce()
{
#ifdef __GLIBC__
    (void)::mallopt(M_MXFAST, 0);
#endif
}

void sortFreedMemory()
{
#ifdef __GLIBC__
    // More than is kept for each thread, and less than is asked of the system.
    constexpr size_t LARGER_PIECE = 8192;
    void *volatile piece = std::malloc(LARGER_PIECE);
    std::free(piece);
#endif
}

} // namespace tidemark
