#include "foundation/ByteScan.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace tidemark {

namespace {

constexpr std::uint64_t ONES = 0x0101010101010101ULL;
constexpr std::uint64_t HIGH_BITS = 0x8080808080808080ULL;

/// The high bit of each byte of `word` that is zero; bytes above the lowest such one may be marked wrongly.
constexpr std::uint64_t zeroBytes(std::uint64_t word)
{
    return (word - ONES) & ~word & HIGH_BITS;
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

qint64 countLineEnds(QByteArrayView bytes)
{
    qint64 count = std::count(bytes.begin(), bytes.end(), '\n');
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
        const qsizetype lineFeed = window.lastIndexOf('\n');
        const qsizetype end = lineFeed >= 0 ? lineFeed : window.lastIndexOf('\r');
        if (end < 0)
            return true;
        start += end + 1;
    }
    return false;
}

} // namespace tidemark
