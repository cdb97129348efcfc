#include "text/TextEncodingTable.h"

#include <algorithm>
#include <array>

namespace tidemark {

namespace {

constexpr auto ROWS = std::to_array<TextEncodingRow>({
#include "EncodingTable.inc"
});

/// The rest are numbers that exist without being offered.
constexpr size_t OFFERED_COUNT = 105;
static_assert(ROWS.size() >= OFFERED_COUNT);

} // namespace

std::span<const TextEncodingRow> allTextEncodings()
{
    return ROWS;
}

std::span<const TextEncodingRow> offeredTextEncodings()
{
    return std::span(ROWS).first(OFFERED_COUNT);
}

const TextEncodingRow *textEncodingRow(CoreFoundationEncoding encoding)
{
    const auto found = std::ranges::find(ROWS, encoding, &TextEncodingRow::coreFoundationEncoding);
    return found == ROWS.end() ? nullptr : &*found;
}

} // namespace tidemark
