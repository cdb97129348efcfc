#pragma once

#include "text/MatchLattice.h"

#include <array>
#include <vector>

namespace tidemark {

/// Finds the places in a text where a match could begin, much faster than by trying to match there. It looks
/// at the two places in a match that hold the rarest characters. Immutable.
class CandidateScan
{
public:
    explicit CandidateScan(const MatchLattice &lattice);

    /// The lowest place in [from, last] where a match may begin, -1 when there is none. Matches from any of
    /// these places must have room in `text`, that is for the lattice's shortest length.
    qsizetype next(const char16_t *text, qsizetype from, qsizetype last) const
    {
        return from > last ? -1 : _find(*this, text, from, last);
    }

private:
    static constexpr size_t MOST_UNITS = 8;
    /// The units that any match has at one distance from its start.
    struct Filter
    {
        qsizetype offset = 0;
        std::array<char16_t, MOST_UNITS> units = {};
    };
    using Find = qsizetype (*)(const CandidateScan &, const char16_t *, qsizetype, qsizetype);

    template <size_t UnitCount>
    static qsizetype _findByBlocks(const CandidateScan &scan, const char16_t *text, qsizetype from,
                                   qsizetype last);
    static qsizetype _findByTable(const CandidateScan &scan, const char16_t *text, qsizetype from,
                                  qsizetype last);
    void _useTwoRarest(const std::vector<std::vector<char16_t>> &unitsAt);
    void _useTable(const std::vector<std::vector<char16_t>> &unitsAt);

    Filter _first;
    Filter _second;
    /// One flag for each unit, only when no place allows fewer than a handful.
    std::vector<bool> _table;
    Find _find = nullptr;
};

} // namespace tidemark
