#include "text/MatchLattice.h"

#include <algorithm>
#include <limits>

namespace tidemark {

namespace {

/// A letter that some mark folds to counts as a mark: in the text it may be one.
bool mayBeMark(const CharacterFolding &folding, char32_t value)
{
    const std::vector<char32_t> origins = folding.charactersStartingWith(value);
    return std::any_of(origins.begin(), origins.end(), [&folding](char32_t origin) {
        return folding.keyOf(origin).begin()->combiningClass != 0;
    });
}

} // namespace

MatchLattice::MatchLattice(const CharacterFolding &folding, const ComparisonKey &key) : _steps(key.size())
{
    for (int begin = 0; begin < length();) {
        int end = begin;
        while (end < length() && mayBeMark(folding, key[size_t(end)].value))
            ++end;
        end = std::max(end, begin + 1);
        _addGroup(key, begin, end);
        begin = end;
    }
    for (const Group &group : _groups)
        _addSteps(folding, group);
}

void MatchLattice::_addGroup(const ComparisonKey &key, int begin, int end)
{
    Group group = {begin, end, {}};
    for (int position = begin; position < end; ++position) {
        group.values.push_back(key[size_t(position)].value);
        _groupIndices.push_back(_groups.size());
    }
    std::sort(group.values.begin(), group.values.end());
    group.values.erase(std::unique(group.values.begin(), group.values.end()), group.values.end());
    _groups.push_back(std::move(group));
}

bool MatchLattice::_fits(const CharacterKey &character, int position) const
{
    if (character.size() > length() - position)
        return false;
    return std::all_of(character.begin(), character.end(), [&](KeyCharacter part) {
        const std::vector<char32_t> &values = _groupAt(position++).values;
        return std::binary_search(values.begin(), values.end(), char32_t(part.value));
    });
}

void MatchLattice::_addSteps(const CharacterFolding &folding, const Group &group)
{
    std::vector<char32_t> characters;
    for (const char32_t value : group.values) {
        const std::vector<char32_t> origins = folding.charactersStartingWith(value);
        characters.insert(characters.end(), origins.begin(), origins.end());
    }
    for (const char32_t character : characters) {
        const CharacterKey parts = folding.keyOf(character);
        for (int position = group.begin; position < group.end; ++position) {
            if (_fits(parts, position))
                _steps[size_t(position)].push_back({character, position + parts.size()});
        }
    }
}

int MatchLattice::shortestLength() const
{
    std::vector<int> shortest(_steps.size() + 1, 0);
    for (int position = length() - 1; position >= 0; --position) {
        int best = std::numeric_limits<int>::max();
        for (const Step &step : stepsFrom(position))
            best = std::min(best, unitCount(step.character) + shortest[size_t(step.target)]);
        shortest[size_t(position)] = best;
    }
    return shortest.front();
}

} // namespace tidemark
