#include "window/results/MatchLineDisplay.h"

#include "matching/TDFindResultItem.h"
#include "text/CharacterSets.h"

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

StyledText buildMatchLineAttributedString(const TDMatchLine &line, bool selected)
{
    const QString prefix = QString::number(line.lineNumber()) + QStringLiteral(": ");
    const QString text = line.matchLineString();
    const QList<TextRange> ranges = line.matchRanges();
    const TextRange body = rangeWithoutNewlinesAtEnds(text);

    StyledText styled;
    styled.text = prefix + withVisibleControls(QStringView(text).sliced(body.location, body.length));
    styled.font = {QStringLiteral("Lucida Grande"), SMALL_SYSTEM_FONT_SIZE};
    styled.lineBreakMode = LineBreakMode::WrapByCharacter;
    styled.runs.reserve(ranges.size() + 2);
    styled.runs << StyledRun{styled.wholeRange(), selected ? TD_COLOR_WHITE : TD_COLOR_BLACK, {}, false, {}};
    for (qsizetype index = 0; index < ranges.size(); ++index) {
        // Positions are those in the untrimmed line, also on a line that begins with line-break characters.
        const TextRange shown = {prefix.size() + ranges[index].location, ranges[index].length};
        styled.runs << StyledRun{shown,
                                 TD_COLOR_BLACK,
                                 index == line.highlightedMatchIndex() ? HIGHLIGHTED_MATCH_BACKGROUND
                                                                       : MATCH_BACKGROUND,
                                 false,
                                 {}};
    }
    if (!ranges.isEmpty())
        styled.runs << StyledRun{{0, prefix.size()}, LINE_NUMBER_COLOR, {}, false, {}};
    return styled;
}

StyledText displayFilenameOrMatchLine(const TDFindResultItem &item, bool selected)
{
    if (item.matchLine() != nullptr)
        return buildMatchLineAttributedString(*item.matchLine(), selected);
    if (item.error())
        return item.displayError();
    StyledText name;
    name.text = item.filenameMatchLineSortKey();
    return name;
}

} // namespace tidemark
