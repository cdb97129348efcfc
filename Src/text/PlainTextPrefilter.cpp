#include "text/PlainTextPrefilter.h"

#include "text/MatchLattice.h"
#include "text/PlainTextPattern.h"

#include <algorithm>

namespace tidemark {

namespace {

using Spellings = PlainTextPrefilter::Spellings;

constexpr size_t MOST_SPELLINGS = 64;
/// Most paths through a run of marks aren't spellings, so more are walked than are kept.
constexpr size_t MOST_PATHS = 4096;

bool sameValues(const ComparisonKey &left, const KeyCharacter *right, const KeyCharacter *rightEnd)
{
    return std::equal(left.begin(), left.end(), right, rightEnd,
                      [](KeyCharacter a, KeyCharacter b) { return a.value == b.value; });
}

/// All texts whose key is a stretch of another key.
class SpellingCollector
{
public:
    SpellingCollector(const CharacterFolding &folding, const ComparisonKey &key, const MatchLattice &lattice)
        : _folding(folding), _key(key), _lattice(lattice)
    {}

    /// Empty when there are too many.
    Spellings collect(int begin, int end)
    {
        _begin = begin;
        _end = end;
        _pathsLeft = MOST_PATHS;
        _spellings.clear();
        _text.clear();
        return _walk(begin) ? _spellings : Spellings();
    }

private:
    bool _walk(int position)
    {
        if (position == _end)
            return _keep();
        for (const MatchLattice::Step step : _lattice.stepsFrom(position)) {
            const qsizetype length = _text.size();
            _text.append(QChar::fromUcs4(step.character));
            if (!_walk(step.target))
                return false;
            _text.truncate(length);
        }
        return true;
    }

    bool _keep()
    {
        if (_pathsLeft-- == 0)
            return false;
        if (sameValues(_folding.keyOf(_text), _key.data() + _begin, _key.data() + _end))
            _spellings.push_back(_text);
        return _spellings.size() <= MOST_SPELLINGS;
    }

    const CharacterFolding &_folding;
    const ComparisonKey &_key;
    const MatchLattice &_lattice;
    int _begin = 0;
    int _end = 0;
    size_t _pathsLeft = 0;
    Spellings _spellings;
    QString _text;
};

/// The positions that every spelling has a character boundary at, the first and the last included.
std::vector<int> commonBoundaries(const MatchLattice &lattice)
{
    std::vector<int> boundaries;
    int furthest = 0;
    for (int position = 0; position < lattice.length(); ++position) {
        if (furthest <= position && !lattice.isWithinMarks(position))
            boundaries.push_back(position);
        for (const MatchLattice::Step step : lattice.stepsFrom(position))
            furthest = std::max(furthest, step.target);
    }
    boundaries.push_back(lattice.length());
    return boundaries;
}

qsizetype shortestSpelling(const Spellings &spellings)
{
    const auto bySize = [](const QString &left, const QString &right) { return left.size() < right.size(); };
    return std::min_element(spellings.begin(), spellings.end(), bySize)->size();
}

/// A stretch of parts and how much of a text it takes at least.
struct Stretch
{
    size_t begin = 0;
    size_t end = 0;
    qsizetype shortest = 0;
    size_t textCount = 1;

    bool isBetterThan(const Stretch &other) const
    {
        return shortest > other.shortest || (shortest == other.shortest && textCount < other.textCount);
    }
};

std::vector<Spellings> longestWithoutGap(const std::vector<Spellings> &parts)
{
    Stretch best;
    Stretch current;
    for (size_t i = 0; i < parts.size(); ++i) {
        if (parts[i].empty()) {
            current = {i + 1, i + 1};
            continue;
        }
        current.end = i + 1;
        current.shortest += shortestSpelling(parts[i]);
        if (current.isBetterThan(best))
            best = current;
    }
    return {parts.begin() + qsizetype(best.begin), parts.begin() + qsizetype(best.end)};
}

std::vector<QString> combined(const std::vector<QString> &texts, const Spellings &endings)
{
    std::vector<QString> result;
    result.reserve(texts.size() * endings.size());
    for (const QString &text : texts) {
        for (const QString &ending : endings)
            result.push_back(text + ending);
    }
    return result;
}

bool hasSurrogate(const ComparisonKey &key)
{
    return std::any_of(key.begin(), key.end(), [](KeyCharacter c) { return QChar::isSurrogate(c.value); });
}

} // namespace

PlainTextPrefilter::PlainTextPrefilter(const PlainTextPattern &pattern)
{
    const CharacterFolding &folding = CharacterFolding::forRule(pattern.caseRule());
    const ComparisonKey key = folding.keyOf(pattern.findText());
    // A match may begin with the second half of a surrogate pair, which has no bytes of its own in any
    // encoding.
    if (key.empty() || hasSurrogate(key))
        return;
    const MatchLattice lattice(folding, key);
    SpellingCollector collector(folding, key, lattice);
    const std::vector<int> boundaries = commonBoundaries(lattice);
    std::vector<Spellings> parts;
    for (size_t i = 1; i < boundaries.size(); ++i)
        parts.push_back(collector.collect(boundaries[i - 1], boundaries[i]));
    _parts = longestWithoutGap(parts);
}

std::vector<QString> PlainTextPrefilter::requiredTexts(size_t mostTexts) const
{
    Stretch best;
    Stretch current;
    for (size_t i = 0; i < _parts.size(); ++i) {
        current.end = i + 1;
        current.textCount *= _parts[i].size();
        current.shortest += shortestSpelling(_parts[i]);
        while (current.textCount > mostTexts && current.begin < current.end) {
            current.textCount /= _parts[current.begin].size();
            current.shortest -= shortestSpelling(_parts[current.begin++]);
        }
        if (current.isBetterThan(best))
            best = current;
    }
    if (best.begin == best.end)
        return {};
    std::vector<QString> texts = {QString()};
    for (size_t i = best.begin; i < best.end; ++i)
        texts = combined(texts, _parts[i]);
    return texts;
}

} // namespace tidemark
