#include "text/AsciiFinder.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tidemark {

namespace {

constexpr qsizetype SHORT_LANES = 16;
using ShortLanes = std::uint8_t __attribute__((vector_size(SHORT_LANES)));

/// From frequent to rare; everything else is rarer.
constexpr std::string_view FREQUENT_FIRST = " etaoinsrhldcumfpgwybvkxjqz";

constexpr char lowered(char character)
{
    return character >= 'A' && character <= 'Z' ? char(character | 0x20) : character;
}

/// With this bit set both cases of a letter are its lower one.
constexpr std::uint8_t caseBit(char lower)
{
    return lower >= 'a' && lower <= 'z' ? 0x20 : 0;
}

ShortLanes lanesAt(const char *place)
{
    ShortLanes lanes;
    std::memcpy(&lanes, place, sizeof lanes);
    return lanes;
}

/// Whether `isAt` holds for one of the lanes that are all ones; the others are all zeros.
template <typename IsAt>
bool anyOf(const ShortLanes &lanes, IsAt isAt)
{
    std::array<std::uint64_t, SHORT_LANES / 8> words;
    std::memcpy(words.data(), &lanes, sizeof words);
    for (size_t index = 0; index < words.size(); ++index) {
        for (std::uint64_t word = words[index]; word != 0;) {
            const bool isLittleEndian = std::endian::native == std::endian::little;
            const int bit = isLittleEndian ? std::countr_zero(word) : 56 - std::countl_zero(word);
            const int lane = isLittleEndian ? bit / 8 : 7 - bit / 8;
            if (isAt(qsizetype(index * 8) + lane))
                return true;
            word &= ~(std::uint64_t(0xFF) << bit);
        }
    }
    return false;
}

size_t rarity(char character)
{
    return std::min(FREQUENT_FIRST.find(character), FREQUENT_FIRST.size());
}

} // namespace

AsciiFinder::AsciiFinder(const QByteArray &text) : _text(text), _last(text.size() - 1)
{
    for (char &character : _text)
        character = lowered(character);
    for (qsizetype index = 0; index < _text.size(); ++index) {
        if (rarity(_text[index]) > rarity(_text[_rare]))
            _rare = index;
    }
}

bool AsciiFinder::_isAt(const char *place) const
{
    for (qsizetype index = 0; index < _text.size(); ++index) {
        if (lowered(place[index]) != _text[index])
            return false;
    }
    return true;
}

bool AsciiFinder::isIn(QByteArrayView bytes) const
{
    const qsizetype places = bytes.size() - _text.size() + 1;
    if (places < SHORT_LANES) {
        for (qsizetype place = 0; place < places; ++place) {
            if (_isAt(bytes.data() + place))
                return true;
        }
        return false;
    }
    // The last places are looked at together with some before them.
    for (qsizetype place = 0; place < places - SHORT_LANES; place += SHORT_LANES) {
        if (_isAtOneOfLanes(bytes.data() + place))
            return true;
    }
    return _isAtOneOfLanes(bytes.data() + places - SHORT_LANES);
}

bool AsciiFinder::_isAtOneOfLanes(const char *start) const
{
    const char rare = _text[_rare];
    const char last = _text[_last];
    const ShortLanes isRare =
        (ShortLanes)((lanesAt(start + _rare) | (ShortLanes{} + caseBit(rare))) == std::uint8_t(rare));
    const ShortLanes isLast =
        (ShortLanes)((lanesAt(start + _last) | (ShortLanes{} + caseBit(last))) == std::uint8_t(last));
    return anyOf(isRare & isLast, [&](qsizetype place) { return _isAt(start + place); });
}

} // namespace tidemark
