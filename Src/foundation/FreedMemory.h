#pragma once

#include <QThreadPool>

#include <utility>

namespace tidemark {

/// Lets the C library join small pieces of memory as they are freed. By itself it leaves that for later, and
/// a thread that then asks for a larger piece waits while millions of them are joined: the main thread for
/// half a second, after so many lines were replaced. To be called at the start of a program with a window.
void joinFreedMemoryAtOnce();

/// Files away what this thread freed lately in small pieces. By itself the C library leaves that to the next
/// larger allocations, which wait long after millions of pieces. To be called now and then while so many are
/// freed; costs nothing otherwise.
void sortFreedMemory();

/// Lets go, on a thread of the toolkit's pool, of what would take long.
template <typename T>
void releaseElsewhere(T value)
{
    QThreadPool::globalInstance()->start([released = std::move(value)]() mutable { released = T(); });
}

} // namespace tidemark
