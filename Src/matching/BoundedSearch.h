#pragma once

#include "text/TextRange.h"

#include <QByteArrayView>

#include <boost/regex.hpp>

#include <chrono>
#include <compare>
#include <cstddef>
#include <iterator>
#include <stdexcept>

namespace tidemark {

/// Thrown when this program, not the library, gives up on an expression.
struct ExpressionLimitReached : std::runtime_error
{
    ExpressionLimitReached() : std::runtime_error("the expression takes too long") {}
};

/// What may be spent on one line, by all searches in it together: a second and a half of computing, and as
/// much again for every few million bytes. The library's own limit lets some expressions run for hours.
class SearchEffort
{
public:
    explicit SearchEffort(qsizetype lineSize);
    /// Allows this much computing, however long the line is.
    explicit SearchEffort(std::chrono::milliseconds allowed);

    /// For searches that look at the clock without a BoundedPosition.
    bool isSpent();

    /// While it exists, what this thread does with a BoundedPosition counts for the effort.
    class Counting
    {
    public:
        explicit Counting(SearchEffort &effort);
        ~Counting();
        Counting(const Counting &) = delete;
        Counting &operator=(const Counting &) = delete;

    private:
        SearchEffort *_outer;
    };

private:
    friend class BoundedPosition;
    /// Throws ExpressionLimitReached when too much was spent, WorkStopped on a stop.
    static void _check();
    void _checkTime();

    /// Looking at the clock each time would cost more than matching.
    static constexpr int BYTES_BETWEEN_CHECKS = 256;
    static inline thread_local int _bytesToCheck = BYTES_BETWEEN_CHECKS;
    static inline thread_local SearchEffort *_current = nullptr;

    qint64 _allowed;          ///< nanoseconds
    qint64 _start = 0;        ///< of the first check
    qint64 _computeStart = 0; ///< of this thread's own clock, once there is a suspicion
};

/// A position in bytes that ends a search when it takes too long or a stop is asked for. That works because
/// matching never goes on for long without looking at bytes.
class BoundedPosition
{
public:
    using iterator_category = std::random_access_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char *;
    using reference = const char &;

    BoundedPosition() = default;
    explicit BoundedPosition(const char *position) : _position(position) {}

    const char *data() const { return _position; }
    const char &operator*() const
    {
        if (--SearchEffort::_bytesToCheck < 0)
            SearchEffort::_check();
        return *_position;
    }
    const char &operator[](difference_type offset) const { return *(*this + offset); }

    BoundedPosition &operator++() { return *this += 1; }
    BoundedPosition &operator--() { return *this -= 1; }
    BoundedPosition operator++(int) { return BoundedPosition(_position++); }
    BoundedPosition operator--(int) { return BoundedPosition(_position--); }
    BoundedPosition &operator+=(difference_type offset)
    {
        _position += offset;
        return *this;
    }
    BoundedPosition &operator-=(difference_type offset) { return *this += -offset; }
    friend BoundedPosition operator+(BoundedPosition position, difference_type offset)
    {
        return position += offset;
    }
    friend BoundedPosition operator+(difference_type offset, BoundedPosition position)
    {
        return position += offset;
    }
    friend BoundedPosition operator-(BoundedPosition position, difference_type offset)
    {
        return position -= offset;
    }
    friend difference_type operator-(BoundedPosition left, BoundedPosition right)
    {
        return left._position - right._position;
    }
    friend auto operator<=>(BoundedPosition, BoundedPosition) = default;

private:
    const char *_position = nullptr;
};

/// The first match within the range of the bytes, or not found; nothing outside the range is visible to it.
/// Throws what the library throws, also when the effort is spent. Without an effort nothing is counted, which
/// is faster, and nothing but the library's own limits ends the search.
TextRange firstMatch(const boost::regex &expression, QByteArrayView bytes, TextRange range);
TextRange firstMatch(const boost::regex &expression, QByteArrayView bytes, TextRange range,
                     SearchEffort &effort);

} // namespace tidemark
