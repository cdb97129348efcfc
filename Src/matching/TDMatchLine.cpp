#include "matching/TDMatchLine.h"

#include "text/CharacterSets.h"
#include "text/TextEncoding.h"

namespace tidemark {

namespace {

constexpr double SMALL_SYSTEM_FONT_SIZE = 11;
constexpr char16_t BULLET = u'\x2022';
constexpr StyledColor MATCH_BACKGROUND = {241 / 255.0, 224 / 255.0, 169 / 255.0};
constexpr StyledColor HIGHLIGHTED_MATCH_BACKGROUND = {1.0, 147 / 255.0, 32 / 255.0};
constexpr StyledColor LINE_NUMBER_COLOR = {180 / 255.0, 180 / 255.0, 180 / 255.0};

/// Every control or format character as one bullet, so that positions in the text don't move.
QString withVisibleControls(QStringView text)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype index = 0; index < text.size(); ++index) {
        const QChar unit = text[index];
        if (unit.isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate()) {
            const char32_t codePoint = QChar::surrogateToUcs4(unit, text[index + 1]);
            if (isControlCharacter(codePoint))
                result += QChar(BULLET);
            else
                result += text.sliced(index, 2);
            ++index;
        } else {
            result += isControlCharacter(unit.unicode()) ? QChar(BULLET) : unit;
        }
    }
    return result;
}

} // namespace

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
        _changed = std::make_unique<Changed>(Changed{ranges, text, text, ranges, ranges, {}});
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

const StyledText &TDMatchLine::matchLineAttributedString()
{
    if (!_matchLineAttributedString)
        _matchLineAttributedString = std::make_unique<StyledText>(buildMatchLineAttributedString());
    return *_matchLineAttributedString;
}

void TDMatchLine::setMatchLineAttributedString(const StyledText &text)
{
    _matchLineAttributedString = std::make_unique<StyledText>(text);
}

StyledText TDMatchLine::buildMatchLineAttributedString() const
{
    const QString prefix = QString::number(_lineNumber) + QStringLiteral(": ");
    const QString line = matchLineString();
    const QList<TextRange> ranges = matchRanges();
    const TextRange body = rangeWithoutNewlinesAtEnds(line);

    StyledText styled;
    styled.text = prefix + withVisibleControls(QStringView(line).sliced(body.location, body.length));
    styled.font = {QStringLiteral("Lucida Grande"), SMALL_SYSTEM_FONT_SIZE};
    styled.lineBreakMode = LineBreakMode::WrapByCharacter;
    styled.runs.reserve(ranges.size() + 2);
    styled.runs << StyledRun{styled.wholeRange(), _selected ? TD_COLOR_WHITE : TD_COLOR_BLACK, {}, false, {}};
    for (qsizetype index = 0; index < ranges.size(); ++index) {
        // Positions are those in the untrimmed line, also on a line that begins with line-break characters.
        const TextRange shown = {prefix.size() + ranges[index].location, ranges[index].length};
        styled.runs << StyledRun{shown,
                                 TD_COLOR_BLACK,
                                 index == _highlightedMatchIndex ? HIGHLIGHTED_MATCH_BACKGROUND
                                                                 : MATCH_BACKGROUND,
                                 false,
                                 {}};
    }
    if (!ranges.isEmpty())
        styled.runs << StyledRun{{0, prefix.size()}, LINE_NUMBER_COLOR, {}, false, {}};
    return styled;
}

} // namespace tidemark
