#include "foundation/FreedMemory.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace tidemark {

void joinFreedMemoryAtOnce()
{
#ifdef __GLIBC__
    (void)::mallopt(M_MXFAST, 0);
#endif
}

} // namespace tidemark
