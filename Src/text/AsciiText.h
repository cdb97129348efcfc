#pragma once

#include "text/ByteScan.h"

#include <QStringView>

#include <algorithm>

namespace tidemark {

/// True when every UTF-16 unit is below 0x80, so also for none at all.
inline bool isAscii(QStringView text)
{
    constexpr char16_t NOT_ASCII = static_cast<char16_t>(~0x7F);
    constexpr qsizetype BLOCK = 64;
    const char16_t *const units = text.utf16();
    qsizetype position = 0;
    // Whole blocks without a branch inside become vector instructions.
    for (; position + BLOCK <= text.size(); position += BLOCK) {
        char16_t bits = 0;
        for (qsizetype i = 0; i < BLOCK; ++i)
            bits = static_cast<char16_t>(bits | units[position + i]);
        if (bits & NOT_ASCII)
            return false;
    }
    return std::all_of(units + position, units + text.size(),
                       [](char16_t unit) { return (unit & NOT_ASCII) == 0; });
}

} // namespace tidemark
