#pragma once

#include "foundation/StopFlag.h"

#include <compare>
#include <cstddef>
#include <iterator>

namespace tidemark {

/// Walks over bytes for an algorithm that can't be told to stop: now and then, while it is used, it checks
/// for a stop, and throws WorkStopped through the algorithm.
class StoppableIterator
{
public:
    using iterator_category = std::random_access_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char *;
    using reference = const char &;

    StoppableIterator() = default;
    explicit StoppableIterator(const char *position) : _position(position) {}

    reference operator*() const
    {
        _count();
        return *_position;
    }
    reference operator[](difference_type offset) const { return _position[offset]; }

    StoppableIterator &operator++() { return *this += 1; }
    StoppableIterator operator++(int) { return StoppableIterator(_position++); }
    StoppableIterator &operator--() { return *this -= 1; }
    StoppableIterator operator--(int) { return StoppableIterator(_position--); }
    StoppableIterator &operator+=(difference_type offset)
    {
        _position += offset;
        return *this;
    }
    StoppableIterator &operator-=(difference_type offset) { return *this += -offset; }

    friend StoppableIterator operator+(StoppableIterator at, difference_type offset) { return at += offset; }
    friend StoppableIterator operator+(difference_type offset, StoppableIterator at) { return at += offset; }
    friend StoppableIterator operator-(StoppableIterator at, difference_type offset) { return at -= offset; }
    friend difference_type operator-(StoppableIterator left, StoppableIterator right)
    {
        return left._position - right._position;
    }
    friend bool operator==(StoppableIterator left, StoppableIterator right)
    {
        _count();
        return left._position == right._position;
    }
    friend auto operator<=>(StoppableIterator left, StoppableIterator right)
    {
        return left._position <=> right._position;
    }

private:
    static void _count()
    {
        constexpr unsigned USES_BETWEEN_CHECKS = 1 << 14;
        thread_local unsigned uses = 0;
        if (++uses % USES_BETWEEN_CHECKS == 0)
            checkForStop();
    }

    const char *_position = nullptr;
};

} // namespace tidemark
