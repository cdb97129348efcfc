#include "foundation/SignalOfFileSizeLimit.h"

#include <csignal>

namespace tidemark {

void ignoreSignalOfFileSizeLimit()
{
    struct sigaction action = {};
    if (::sigaction(SIGXFSZ, nullptr, &action) == 0 && action.sa_handler == SIG_DFL) {
        action.sa_handler = SIG_IGN;
        (void)::sigaction(SIGXFSZ, &action, nullptr);
    }
}

} // namespace tidemark
