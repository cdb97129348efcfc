#pragma once

#include "text/TextEncoding.h"

#include <array>
#include <vector>

namespace tidemark {

struct TextEncodingRow;

/// Both directions of an encoding in which every character is one byte. Immutable.
class ByteTable
{
public:
    /// The character of each byte.
    using Characters = std::array<char16_t, 256>;
    /// Stands for a byte without a character; no byte of any encoding means it.
    static constexpr char16_t NO_CHARACTER = 0xFFFF;
    static constexpr quint16 NO_BYTE = 0x100;

    /// Only the first `encodableCount` bytes are written when encoding.
    explicit ByteTable(const Characters &characters, int encodableCount = 256);

    char16_t characterOf(uchar byte) const { return _characters[byte]; }
    quint16 byteOf(char16_t character) const
    {
        return _pages[_pageOfHighByte[character >> 8]][character & 0xFF];
    }
    /// True when a text of ASCII bytes only is that ASCII text.
    bool keepsAscii() const { return _keepsAscii; }
    /// True when the bytes LF and CR are these characters, and no others are.
    bool keepsLines() const { return _keepsLines; }
    EncodingShape shape() const { return _shape; }

private:
    using Page = std::array<quint16, 256>;

    Characters _characters;
    std::array<quint16, 256> _pageOfHighByte = {};
    std::vector<Page> _pages; ///< the first is empty, for all that can't be encoded
    bool _keepsAscii = true;
    bool _keepsLines = true;
    EncodingShape _shape = EncodingShape::AsciiBytes;
};

/// The encoding's table, made when first asked for and kept; null when its characters aren't single bytes.
/// Callable from any thread.
const ByteTable *sharedByteTable(const TextEncodingRow &row);

class ByteTextConverter : public TextConverter
{
public:
    /// The table must outlive the converter.
    ByteTextConverter(StringEncoding encoding, const ByteTable &table)
        : TextConverter(encoding, table.shape(), {table.keepsAscii(), table.keepsLines()}), _table(table)
    {}

    std::optional<QString> decode(QByteArrayView bytes) override;
    std::optional<QByteArray> encode(QStringView text) override;

private:
    const ByteTable &_table;
};

} // namespace tidemark
