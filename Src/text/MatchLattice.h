#pragma once

#include "text/CharacterFolding.h"

#include <vector>

namespace tidemark {

/// Every way a text may spell a key, as a graph: its positions are 0 to length(), and a step is a character
/// of the text that takes one from a position to a later one. Each text with this key is a path from the
/// first position to the last. The reverse holds only outside runs of marks, where a path may also be a text
/// whose marks differ in number.
class MatchLattice
{
public:
    struct Step
    {
        char32_t character;
        int target;
    };

    MatchLattice(const CharacterFolding &folding, const ComparisonKey &key);

    int length() const { return int(_steps.size()); }
    const std::vector<Step> &stepsFrom(int position) const { return _steps[size_t(position)]; }

    /// Of the shortest text with this key, in UTF-16 units.
    int shortestLength() const;

    /// True when the marks before and after the position may stand in the text in another order.
    bool isWithinMarks(int position) const { return position > _groupAt(position).begin; }

private:
    /// A letter, or a run of marks, whose order in the text is open.
    struct Group
    {
        int begin;
        int end;
        /// Without duplicates, in ascending order.
        std::vector<char32_t> values;
    };
    const Group &_groupAt(int position) const { return _groups[_groupIndices[size_t(position)]]; }
    void _addGroup(const ComparisonKey &key, int begin, int end);
    bool _fits(const CharacterKey &character, int position) const;
    void _addSteps(const CharacterFolding &folding, const Group &group);

    std::vector<std::vector<Step>> _steps;
    std::vector<Group> _groups;
    std::vector<size_t> _groupIndices;
};

} // namespace tidemark
