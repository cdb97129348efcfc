#pragma once

#include <QtGlobal>

namespace tidemark::test {

/// A limit that the program holds on an idle machine, in milliseconds. Tests share their machine with other
/// tests and may be slowed down by sanitizers, so they get more; with TIDEMARK_STRICT_TIMES set they don't.
inline qint64 timeLimit(qint64 milliseconds)
{
    if (qEnvironmentVariableIsSet("TIDEMARK_STRICT_TIMES"))
        return milliseconds;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return milliseconds * 40;
#else
    return milliseconds * 8;
#endif
}

} // namespace tidemark::test
