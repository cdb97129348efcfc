#include "text/ByteScan.h"

#include "foundation/StopFlag.h"

#include <algorithm>
#include <array>
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

#if defined(__x86_64__) && defined(__GNUC__)
#define TIDEMARK_WIDE __attribute__((target("avx2")))
bool hasWideVectors()
{
    return __builtin_cpu_supports("avx2");
}
#else
#define TIDEMARK_WIDE
bool hasWideVectors()
{
    return false;
}
#endif
// Inlined into the functions for each kind of processor, and compiled for it there.
#define TIDEMARK_FOR_EACH_PROCESSOR [[gnu::always_inline]] inline

constexpr qsizetype LANES = 32;
/// As many vector registers as it takes.
using Lanes = std::uint8_t __attribute__((vector_size(LANES)));

using LaneWords = std::array<std::uint64_t, LANES / 8>;

TIDEMARK_FOR_EACH_PROCESSOR LaneWords wordsOf(const Lanes *lanes)
{
    LaneWords words;
    std::memcpy(words.data(), lanes, sizeof words);
    return words;
}

TIDEMARK_FOR_EACH_PROCESSOR qint64 sumOfBytes(std::uint64_t word)
{
    constexpr std::uint64_t EVERY_SECOND_BYTE = 0x00FF00FF00FF00FFULL;
    const std::uint64_t pairs = (word & EVERY_SECOND_BYTE) + ((word >> 8) & EVERY_SECOND_BYTE);
    return qint64((pairs * 0x0001000100010001ULL) >> 48);
}

struct LineEndBytes
{
    qint64 lineFeeds = 0;
    bool hasCarriageReturns = false;
};

TIDEMARK_FOR_EACH_PROCESSOR void lookAt(const char *bytes, qsizetype count, LineEndBytes &found)
{
    constexpr qsizetype MOST_ROWS = 255;
    Lanes carriageReturns = {};
    qsizetype index = 0;
    while (count - index >= LANES) {
        Lanes lineFeeds = {};
        const qsizetype rows = std::min(MOST_ROWS, (count - index) / LANES);
        for (const qsizetype end = index + rows * LANES; index < end; index += LANES) {
            Lanes lanes;
            std::memcpy(&lanes, bytes + index, sizeof lanes);
            lineFeeds -= (Lanes)(lanes == '\n');
            carriageReturns |= (Lanes)(lanes == '\r');
        }
        // Before one of them can overflow.
        for (const std::uint64_t word : wordsOf(&lineFeeds))
            found.lineFeeds += sumOfBytes(word);
    }
    for (const std::uint64_t word : wordsOf(&carriageReturns))
        found.hasCarriageReturns |= word != 0;
    for (; index < count; ++index) {
        found.lineFeeds += bytes[index] == '\n';
        found.hasCarriageReturns |= bytes[index] == '\r';
    }
}

TIDEMARK_FOR_EACH_PROCESSOR bool areAscii(const char *bytes, qsizetype count)
{
    constexpr qsizetype ROWS = 4;
    qsizetype index = 0;
    for (; index + ROWS * LANES <= count; index += ROWS * LANES) {
        Lanes bits = {};
        for (qsizetype row = 0; row < ROWS; ++row) {
            Lanes lanes;
            std::memcpy(&lanes, bytes + index + row * LANES, sizeof lanes);
            bits |= lanes;
        }
        const LaneWords words = wordsOf(&bits);
        if (((words[0] | words[1] | words[2] | words[3]) & HIGH_BITS) != 0)
            return false;
    }
    return std::all_of(bytes + index, bytes + count, [](char byte) { return (byte & 0x80) == 0; });
}

void lookAtNarrow(const char *bytes, qsizetype count, LineEndBytes &found)
{
    lookAt(bytes, count, found);
}

TIDEMARK_WIDE void lookAtWide(const char *bytes, qsizetype count, LineEndBytes &found)
{
    lookAt(bytes, count, found);
}

bool areAsciiNarrow(const char *bytes, qsizetype count)
{
    return areAscii(bytes, count);
}

TIDEMARK_WIDE bool areAsciiWide(const char *bytes, qsizetype count)
{
    return areAscii(bytes, count);
}

} // namespace

bool isAscii(QByteArrayView bytes)
{
    return (hasWideVectors() ? areAsciiWide : areAsciiNarrow)(bytes.data(), bytes.size());
}

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
            if (index % WORK_BETWEEN_STOP_CHECKS == 0)
                checkForStop();
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
    LineEndBytes ends;
    for (qsizetype start = 0; start < bytes.size(); start += WORK_BETWEEN_STOP_CHECKS) {
        const qsizetype length = qMin(bytes.size() - start, qsizetype(WORK_BETWEEN_STOP_CHECKS));
        (hasWideVectors() ? lookAtWide : lookAtNarrow)(bytes.data() + start, length, ends);
        if (start > 0)
            checkForStop();
    }
    qint64 count = ends.lineFeeds;
    if (!ends.hasCarriageReturns)
        return count;
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
        // One byte less: a CR at the very end may be the first half of a line end.
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
