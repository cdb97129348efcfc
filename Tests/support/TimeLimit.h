#pragma once

#include <QtGlobal>

namespace tidemark::test {

inline constexpr bool IS_SANITIZED = TIDEMARK_SANITIZED;
/// The thread sanitizer loses sight of locks in a process that has started another program.
inline constexpr bool MAY_START_PROGRAMS = TIDEMARK_SANITIZES_THREADS == 0;

/// How often to do what is done very often: sanitizers take several times as long and find faults of theirs
/// in fewer rounds as well.
constexpr int rounds(int count)
{
    return IS_SANITIZED ? count / 4 : count;
}

/// A limit that the program holds on an idle machine, in milliseconds. Tests share their machine with other
/// tests and may be slowed down by sanitizers, so they get more; with TIDEMARK_STRICT_TIMES set they don't.
inline qint64 timeLimit(qint64 milliseconds)
{
    if (qEnvironmentVariableIsSet("TIDEMARK_STRICT_TIMES"))
        return milliseconds;
    return milliseconds * (IS_SANITIZED ? 40 : 8);
}

} // namespace tidemark::test
