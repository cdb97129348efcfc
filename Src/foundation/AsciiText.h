#pragma once

#include <QByteArrayView>
#include <QStringView>

#include <algorithm>

namespace tidemark {

/// True when every byte (or UTF-16 unit) is below 0x80, so also for none at all.
template <typename Unit>
bool unitsAreAscii(const Unit *units, qsizetype count)
{
    constexpr Unit NOT_ASCII = static_cast<Unit>(~static_cast<Unit>(0x7F));
    constexpr qsizetype BLOCK = 64;
    qsizetype position = 0;
    // Whole blocks without a branch inside become vector instructions.
    for (; position + BLOCK <= count; position += BLOCK) {
        Unit bits = 0;
        for (qsizetype i = 0; i < BLOCK; ++i)
            bits = static_cast<Unit>(bits | units[position + i]);
        if (bits & NOT_ASCII)
            return false;
    }
    return std::all_of(units + position, units + count, [](Unit unit) { return (unit & NOT_ASCII) == 0; });
}

inline bool isAscii(QByteArrayView bytes)
{
    return unitsAreAscii(reinterpret_cast<const unsigned char *>(bytes.data()), bytes.size());
}

inline bool isAscii(QStringView text)
{
    return unitsAreAscii(text.utf16(), text.size());
}

} // namespace tidemark
