#include "text/CandidateScan.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>

namespace tidemark {

namespace {

/// Further places hardly ever help, and a long find text has many.
constexpr int MOST_PLACES = 32;
constexpr qsizetype BLOCK = 8;
constexpr qsizetype STRIDE = 4 * BLOCK;
/// Compiles to vector instructions wherever there are any.
using Block = std::uint16_t __attribute__((vector_size(2 * BLOCK)));

Block load(const char16_t *units)
{
    Block block;
    std::memcpy(&block, units, sizeof block);
    return block;
}

bool isAnySet(Block block)
{
    std::array<std::uint64_t, 2> halves;
    std::memcpy(&halves, &block, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

/// How common a unit is in the texts that people search, 1 being rarest.
int frequency(char16_t unit)
{
    constexpr std::u16string_view COMMON = u" etaoinsrlcd";
    constexpr std::u16string_view FREQUENT = u"umpfhgybv_-.,()=;\"/*0123\t";
    if (COMMON.find(unit) != COMMON.npos)
        return 20;
    if (FREQUENT.find(unit) != FREQUENT.npos)
        return 8;
    if (unit >= u'a' && unit <= u'z')
        return 5;
    // In a text of another script one letter is as common as the next; the first half of a pair says little.
    if (QChar::isHighSurrogate(unit))
        return 30;
    return unit < 0x80 ? 3 : 4;
}

/// For each place of a match, as far as every match reaches, the units that it may have there.
std::vector<std::vector<char16_t>> unitsOfMatches(const MatchLattice &lattice)
{
    const size_t count = size_t(std::min(lattice.shortestLength(), MOST_PLACES));
    std::vector<std::vector<char16_t>> units(count + 2);
    std::vector<std::vector<int>> positions(count + 2);
    positions.front().push_back(0);
    const auto makeUnique = [](auto &values) {
        std::sort(values.begin(), values.end());
        values.erase(std::unique(values.begin(), values.end()), values.end());
    };
    for (size_t place = 0; place < count; ++place) {
        makeUnique(positions[place]);
        for (const int position : positions[place]) {
            for (const MatchLattice::Step step : lattice.stepsFrom(position)) {
                const bool isPair = unitCount(step.character) == 2;
                units[place].push_back(isPair ? QChar::highSurrogate(step.character)
                                              : char16_t(step.character));
                if (isPair)
                    units[place + 1].push_back(QChar::lowSurrogate(step.character));
                positions[place + (isPair ? 2 : 1)].push_back(step.target);
            }
        }
        makeUnique(units[place]);
    }
    units.resize(count);
    return units;
}

} // namespace

CandidateScan::CandidateScan(const MatchLattice &lattice)
{
    const std::vector<std::vector<char16_t>> unitsAt = unitsOfMatches(lattice);
    const auto isShort = [](const auto &units) { return units.size() <= MOST_UNITS; };
    if (std::any_of(unitsAt.begin(), unitsAt.end(), isShort))
        _useTwoRarest(unitsAt);
    else
        _useTable(unitsAt);
}

void CandidateScan::_useTwoRarest(const std::vector<std::vector<char16_t>> &unitsAt)
{
    const auto weight = [](const std::vector<char16_t> &units) {
        int sum = 0;
        for (const char16_t unit : units)
            sum += frequency(unit);
        return units.size() <= MOST_UNITS ? sum : std::numeric_limits<int>::max();
    };
    std::vector<std::pair<int, size_t>> places;
    for (size_t place = 0; place < unitsAt.size(); ++place)
        places.emplace_back(weight(unitsAt[place]), place);
    std::sort(places.begin(), places.end());
    if (places.size() == 1 || places[1].first == std::numeric_limits<int>::max())
        places.insert(places.begin() + 1, places.front());

    const auto filterAt = [&unitsAt](size_t place) {
        Filter filter;
        filter.offset = qsizetype(place);
        filter.units.fill(unitsAt[place].front());
        std::copy(unitsAt[place].begin(), unitsAt[place].end(), filter.units.begin());
        return filter;
    };
    _first = filterAt(places[0].second);
    _second = filterAt(places[1].second);
    const size_t most = std::max(unitsAt[places[0].second].size(), unitsAt[places[1].second].size());
    constexpr std::array<Find, MOST_UNITS + 1> FINDS = {nullptr,          _findByBlocks<1>, _findByBlocks<2>,
                                                        _findByBlocks<3>, _findByBlocks<4>, _findByBlocks<6>,
                                                        _findByBlocks<6>, _findByBlocks<8>, _findByBlocks<8>};
    _find = FINDS[most];
}

void CandidateScan::_useTable(const std::vector<std::vector<char16_t>> &unitsAt)
{
    const auto bySize = [](const auto &left, const auto &right) { return left.size() < right.size(); };
    const auto narrowest = std::min_element(unitsAt.begin(), unitsAt.end(), bySize);
    _first.offset = narrowest - unitsAt.begin();
    _table.assign(0x10000, false);
    for (const char16_t unit : *narrowest)
        _table[unit] = true;
    _find = _findByTable;
}

qsizetype CandidateScan::_findByTable(const CandidateScan &scan, const char16_t *text, qsizetype from,
                                      qsizetype last)
{
    for (qsizetype place = from; place <= last; ++place) {
        if (scan._table[text[place + scan._first.offset]])
            return place;
    }
    return -1;
}

namespace {

/// Looks for a start at which both filters hold, at many places at once.
template <size_t UnitCount>
struct BlockFilter
{
    BlockFilter(const char16_t *firstUnits, const char16_t *secondUnits)
    {
        for (size_t i = 0; i < UnitCount; ++i) {
            first[i] = Block{} + std::uint16_t(firstUnits[i]);
            second[i] = Block{} + std::uint16_t(secondUnits[i]);
        }
    }

    static Block equalsAny(Block block, const std::array<Block, UnitCount> &units)
    {
        Block result = (Block)(block == units[0]);
        for (size_t i = 1; i < UnitCount; ++i)
            result |= (Block)(block == units[i]);
        return result;
    }

    Block match(const char16_t *firstPlace, const char16_t *secondPlace) const
    {
        return equalsAny(load(firstPlace), first) & equalsAny(load(secondPlace), second);
    }

    /// The index of the first start among BLOCK ones, BLOCK when there is none.
    qsizetype firstIn(const char16_t *firstPlace, const char16_t *secondPlace) const
    {
        const Block found = match(firstPlace, secondPlace);
        qsizetype i = 0;
        if (!isAnySet(found))
            return BLOCK;
        while (found[i] == 0)
            ++i;
        return i;
    }

    bool isAnyInStride(const char16_t *firstPlace, const char16_t *secondPlace) const
    {
        Block found = match(firstPlace, secondPlace);
        for (qsizetype i = BLOCK; i < STRIDE; i += BLOCK)
            found |= match(firstPlace + i, secondPlace + i);
        return isAnySet(found);
    }

    std::array<Block, UnitCount> first;
    std::array<Block, UnitCount> second;
};

} // namespace

template <size_t UnitCount>
qsizetype CandidateScan::_findByBlocks(const CandidateScan &scan, const char16_t *text, qsizetype from,
                                       qsizetype last)
{
    const char16_t *const first = text + scan._first.offset;
    const char16_t *const second = text + scan._second.offset;
    const BlockFilter<UnitCount> filter(scan._first.units.data(), scan._second.units.data());
    qsizetype place = from;
    while (place + STRIDE <= last + 1 && !filter.isAnyInStride(first + place, second + place))
        place += STRIDE;
    for (; place + BLOCK <= last + 1; place += BLOCK) {
        const qsizetype found = filter.firstIn(first + place, second + place);
        if (found < BLOCK)
            return place + found;
    }
    const auto holds = [](const Filter &units, char16_t unit) {
        return std::find(units.units.begin(), units.units.begin() + UnitCount, unit) !=
               units.units.begin() + UnitCount;
    };
    for (; place <= last; ++place) {
        if (holds(scan._first, first[place]) && holds(scan._second, second[place]))
            return place;
    }
    return -1;
}

} // namespace tidemark
