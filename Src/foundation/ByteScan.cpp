#include "foundation/ByteScan.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <numeric>

namespace tidemark {

namespace {

constexpr std::uint64_t ONES = 0x0101010101010101ULL;
constexpr std::uint64_t HIGH_BITS = 0x8080808080808080ULL;

/// The high bit of each byte of `word` that is zero; bytes above the lowest such one may be marked wrongly.
constexpr std::uint64_t zeroBytes(std::uint64_t word)
{
    return (word - ONES) & ~word & HIGH_BITS;
}

/// Counts in lanes of a byte each, which the compiler turns into vector instructions; they are added up
/// before one can overflow.
qint64 countOf(char byte, QByteArrayView bytes)
{
    constexpr qsizetype LANES = 32;
    constexpr qsizetype MOST_ROWS = 255;
    qint64 count = 0;
    qsizetype index = 0;
    while (bytes.size() - index >= LANES) {
        std::array<std::uint8_t, LANES> lanes = {};
        const qsizetype rows = std::min(MOST_ROWS, (bytes.size() - index) / LANES);
        for (const qsizetype end = index + rows * LANES; index < end; index += LANES) {
            for (qsizetype lane = 0; lane < LANES; ++lane)
                lanes[size_t(lane)] = std::uint8_t(lanes[size_t(lane)] + (bytes[index + lane] == byte));
        }
        count = std::accumulate(lanes.begin(), lanes.end(), count);
    }
    return count + std::count(bytes.begin() + index, bytes.end(), byte);
}

} // namespace

qsizetype indexOfLineEnd(QByteArrayView bytes)
{
    const char *data = bytes.data();
    const qsizetype size = bytes.size();
    qsizetype index = 0;
    if constexpr (std::endian::native == std::endian::little) {
        for (; index + 8 <= size; index += 8) {
            std::uint64_t word = 0;
            std::memcpy(&word, data + index, sizeof word);
            const std::uint64_t marks = zeroBytes(word ^ (ONES * '\n')) | zeroBytes(word ^ (ONES * '\r'));
            if (marks != 0)
                return index + std::countr_zero(marks) / 8;
        }
    }
    for (; index < size; ++index) {
        if (data[index] == '\n' || data[index] == '\r')
            return index;
    }
    return -1;
}

qsizetype lastIndexOf(char byte, QByteArrayView bytes)
{
#ifdef __APPLE__
    return bytes.lastIndexOf(byte);
#else
    const void *found = ::memrchr(bytes.data(), byte, size_t(bytes.size()));
    return found == nullptr ? -1 : static_cast<const char *>(found) - bytes.data();
#endif
}

qint64 countLineEnds(QByteArrayView bytes)
{
    qint64 count = countOf('\n', bytes);
    const void *found = std::memchr(bytes.data(), '\r', size_t(bytes.size()));
    while (found != nullptr) {
        const char *next = static_cast<const char *>(found) + 1;
        if (next == bytes.end() || *next != '\n')
            ++count;
        found = std::memchr(next, '\r', size_t(bytes.end() - next));
    }
    return count;
}

bool mayHoldLineLongerThan(QByteArrayView bytes, qsizetype length)
{
    qsizetype start = 0;
    while (bytes.size() - start > length) {
        // One byte less, so that a CR at the very end can't be taken for the end of a line that an LF ends.
        const QByteArrayView window = bytes.sliced(start, length - 1);
        const qsizetype lineFeed = lastIndexOf('\n', window);
        const qsizetype end = lineFeed >= 0 ? lineFeed : lastIndexOf('\r', window);
        if (end < 0)
            return true;
        start += end + 1;
    }
    return false;
}

} // namespace tidemark
