#include "text/AsciiFinder.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tidemark {

namespace {

constexpr qsizetype LANES = 16;
using Lanes = std::uint8_t __attribute__((vector_size(LANES)));

/// From frequent to rare; everything else is rarer.
constexpr std::string_view FREQUENT = " etaoinsrhldcumfpgwybvkxjqz";

constexpr char lowered(char character)
{
    return character >= 'A' && character <= 'Z' ? char(character | 0x20) : character;
}

/// With this bit set both cases of a letter are its lower one.
constexpr std::uint8_t caseBit(char lower)
{
    return lower >= 'a' && lower <= 'z' ? 0x20 : 0;
}

Lanes lanesAt(const char *place)
{
    Lanes lanes;
    std::memcpy(&lanes, place, sizeof lanes);
    return lanes;
}

bool anySet(const Lanes &lanes)
{
    std::array<std::uint64_t, LANES / 8> words;
    std::memcpy(words.data(), &lanes, sizeof words);
    return (words[0] | words[1]) != 0;
}

size_t rarity(char character)
{
    return std::min(FREQUENT.find(character), FREQUENT.size());
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
    const char rare = _text[_rare];
    const char last = _text[_last];
    const Lanes rareBit = Lanes{} + caseBit(rare);
    const Lanes lastBit = Lanes{} + caseBit(last);
    for (qsizetype place = 0; place < places; place += LANES) {
        const char *start = bytes.data() + place;
        const qsizetype count = std::min(places - place, LANES);
        if (count == LANES) {
            const Lanes isRare = (Lanes)((lanesAt(start + _rare) | rareBit) == std::uint8_t(rare));
            const Lanes isLast = (Lanes)((lanesAt(start + _last) | lastBit) == std::uint8_t(last));
            if (!anySet(isRare & isLast))
                continue;
        }
        for (qsizetype index = 0; index < count; ++index) {
            if (_isAt(start + index))
                return true;
        }
    }
    return false;
}

} // namespace tidemark
