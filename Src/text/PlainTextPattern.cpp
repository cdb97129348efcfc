#include "text/PlainTextPattern.h"

#include "foundation/StopFlag.h"
#include "text/MatchEnd.h"
#include "text/MatchLattice.h"

#include <QVarLengthArray>

namespace tidemark {

namespace {

constexpr qsizetype NO_MATCH = -1;

/// Compares a text with a key while the text is read. Marks are held back until the run they belong to is
/// complete, for only then their canonical order is known.
class KeyComparison
{
public:
    explicit KeyComparison(const ComparisonKey &key) : _next(key.data()), _end(key.data() + key.size()) {}

    /// False when the text and the key differ.
    bool take(const CharacterKey &character)
    {
        // A character whose key is longer than what is left would have to be cut.
        if (character.size() > _room())
            return false;
        for (const KeyCharacter part : character) {
            if (part.combiningClass != 0)
                _marks.append(part);
            else if (!_takeMarks() || part.value != (_next++)->value)
                return false;
        }
        return true;
    }

    /// The text is as long as the key; whether it equals it is for finish() to say.
    bool isFull() const { return _room() == 0; }
    bool finish() { return _takeMarks(); }

private:
    qsizetype _room() const { return _end - _next - _marks.size(); }

    bool _takeMarks()
    {
        if (_marks.isEmpty())
            return true;
        sortMarks(_marks.begin(), _marks.end());
        for (const KeyCharacter mark : _marks) {
            if (mark.value != (_next++)->value)
                return false;
        }
        _marks.clear();
        return true;
    }

    const KeyCharacter *_next;
    const KeyCharacter *_end;
    QVarLengthArray<KeyCharacter, 32> _marks;
};

} // namespace

PlainTextPattern::PlainTextPattern(const QString &findText, CaseRule caseRule)
    : _findText(findText), _caseRule(caseRule), _folding(&CharacterFolding::forRule(caseRule)),
      _key(_folding->keyOf(findText))
{
    if (!_key.empty())
        _prepareScan();
}

void PlainTextPattern::_prepareScan()
{
    const MatchLattice lattice(*_folding, _key);
    _shortestMatch = lattice.shortestLength();
    _scan.emplace(lattice);
}

TextRange PlainTextPattern::firstRange(QStringView text, TextRange searchRange) const
{
    if (!_scan)
        return TextRange::notFound();
    const QStringView stretch = text.first(searchRange.end()).sliced(searchRange.location);
    const qsizetype last = stretch.size() - _shortestMatch;
    qsizetype start = _nextCandidate(stretch, 0, last);
    while (start >= 0) {
        const qsizetype end = _matchEnd(stretch, start);
        if (end != NO_MATCH && mayMatchEndAt(stretch, end))
            return {searchRange.location + start, end - start};
        start = _nextCandidate(stretch, start + 1, last);
    }
    return TextRange::notFound();
}

qsizetype PlainTextPattern::_nextCandidate(QStringView stretch, qsizetype from, qsizetype last) const
{
    for (;;) {
        const qsizetype lastOfPiece = qMin(last, from + qsizetype(WORK_BETWEEN_STOP_CHECKS));
        const qsizetype found = _scan->next(stretch.utf16(), from, lastOfPiece);
        if (found >= 0 || lastOfPiece == last)
            return found;
        from = lastOfPiece + 1;
        checkForStop();
    }
}

/// There is only one end at a start, as every character lengthens the key.
qsizetype PlainTextPattern::_matchEnd(QStringView stretch, qsizetype start) const
{
    KeyComparison comparison(_key);
    qsizetype end = start;
    while (!comparison.isFull()) {
        if (end == stretch.size())
            return NO_MATCH;
        const char32_t character = characterAt(stretch.utf16(), end, stretch.size());
        if (!comparison.take(_folding->keyOf(character)))
            return NO_MATCH;
        end += unitCount(character);
    }
    return comparison.finish() ? end : NO_MATCH;
}

} // namespace tidemark
