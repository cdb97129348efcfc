#include "matching/TDMatchLine.h"

#include "text/TextEncoding.h"

#include <algorithm>

namespace tidemark {

TDMatchLine::TDMatchLine(qint64 lineNumber, QByteArrayView utf8, std::span<const TextRange> matchRanges)
    : _foundText(utf8), _foundRanges(matchRanges), _lineNumber(lineNumber)
{}

QList<TextRange> TDMatchLine::matchRanges() const
{
    return _changed ? _changed->matchRanges : QList<TextRange>(_foundRanges.begin(), _foundRanges.end());
}

QString TDMatchLine::_foundString() const
{
    return _foundText.isNull() ? QString() : textFromUtf8(_foundText).value_or(QString());
}

TDMatchLine::Changed &TDMatchLine::_own()
{
    if (!_changed) {
        const QString text = _foundString();
        const QList<TextRange> ranges = matchRanges();
        _changed = std::make_unique<Changed>(Changed{ranges, text, text, ranges, ranges, {}, 0, {}});
    }
    return *_changed;
}

void TDMatchLine::setSavedLineString(const QString &line)
{
    Changed &own = _own();
    own.savedLineString = line;
    own.savedMatchRanges = line == own.matchLineString ? own.matchRanges : QList<TextRange>();
}

void TDMatchLine::setMatchRanges(const QList<TextRange> &ranges)
{
    Changed &own = _own();
    if (own.matchRanges.size() != ranges.size())
        setReplacedMatches({});
    own.matchRanges = ranges;
    if (own.foundRanges.size() != ranges.size())
        own.foundRanges = ranges;
}

void TDMatchLine::appendMatchRange(TextRange range)
{
    _own().matchRanges.append(range);
    _own().foundRanges.append(range);
}

void TDMatchLine::removeMatchRange(qsizetype index)
{
    Changed &own = _own();
    if (own.savedMatchRanges.size() == own.matchRanges.size())
        own.savedMatchRanges.removeAt(index);
    own.matchRanges.removeAt(index);
    own.foundRanges.removeAt(index);
    if (size_t(index) >= own.replaced.size())
        return;
    own.replacedCount -= own.replaced[size_t(index)] ? 1 : 0;
    own.replaced.erase(own.replaced.begin() + index);
}

bool TDMatchLine::isReplaced(qsizetype index) const
{
    return size_t(index) < replacedMatches().size() && replacedMatches()[size_t(index)];
}

void TDMatchLine::setReplaced(qsizetype index)
{
    Changed &own = _own();
    own.replaced.resize(std::max(own.replaced.size(), size_t(index) + 1));
    own.replacedCount += own.replaced[size_t(index)] ? 0 : 1;
    own.replaced[size_t(index)] = true;
}

const std::vector<bool> &TDMatchLine::replacedMatches() const
{
    static const std::vector<bool> NONE;
    return _changed ? _changed->replaced : NONE;
}

void TDMatchLine::setReplacedMatches(const std::vector<bool> &replaced)
{
    if (!_changed && replaced.empty())
        return;
    Changed &own = _own();
    own.replaced = replaced;
    own.replacedCount = quint64(std::count(replaced.begin(), replaced.end(), true));
}

QString TDMatchLine::foundLineString() const
{
    if (!_wasFound())
        return matchLineString();
    return _foundText.isNull() ? _changed->foundLineString : _foundString();
}

QList<TextRange> TDMatchLine::foundRanges() const
{
    return _changed && _wasFound() ? _changed->foundRanges : matchRanges();
}

void TDMatchLine::offsetMatchRangesBy(qint64 offset, quint64 startRangeIndex)
{
    QList<TextRange> &ranges = _own().matchRanges;
    for (qsizetype index = qsizetype(startRangeIndex); index < ranges.size(); ++index)
        ranges[index].location += offset;
}

} // namespace tidemark
