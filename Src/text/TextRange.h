#pragma once

#include <QtGlobal>

#include <compare>
#include <limits>

namespace tidemark {

/// The location that means "nothing was found".
inline constexpr qint64 TD_NOT_FOUND = std::numeric_limits<qint64>::max();

/// A stretch of a text, in UTF-16 code units; the end is open: [location, location + length).
struct TextRange
{
    qint64 location = 0;
    qint64 length = 0;

    static constexpr TextRange notFound() { return {TD_NOT_FOUND, 0}; }
    constexpr bool isFound() const { return location != TD_NOT_FOUND; }
    constexpr qint64 end() const { return location + length; }

    friend constexpr bool operator==(const TextRange &, const TextRange &) = default;
};

} // namespace tidemark
