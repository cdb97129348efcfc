#include "window/results/MatchLineDisplay.h"

#include "matching/TDFindResultItem.h"
#include "session/ReplacementPreview.h"
#include "text/CharacterSets.h"

#include <algorithm>
#include <optional>

namespace tidemark {

namespace {

constexpr double SMALL_SYSTEM_FONT_SIZE = 11;
constexpr char16_t BULLET = u'\x2022';
constexpr char16_t RETURN_ARROW = u'\x21B5';
constexpr char16_t WARNING_SIGN = u'\x26A0';
constexpr StyledColor MATCH_BACKGROUND = {241 / 255.0, 224 / 255.0, 169 / 255.0};
constexpr StyledColor HIGHLIGHTED_MATCH_BACKGROUND = {1.0, 147 / 255.0, 32 / 255.0};
constexpr StyledColor REPLACED_MATCH_BACKGROUND = {168 / 255.0, 222 / 255.0, 178 / 255.0};
constexpr StyledColor REPLACEMENT_BACKGROUND = {203 / 255.0, 236 / 255.0, 206 / 255.0};
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

QString shownReplacement(QString text)
{
    text.replace(QLatin1String("\r\n"), QString(QChar(RETURN_ARROW)));
    text.replace(u'\n', QChar(RETURN_ARROW));
    text.replace(u'\r', QChar(RETURN_ARROW));
    return withVisibleControls(text);
}

/// Puts the text behind the match of the last run and strikes that out. How much longer the whole
/// became.
qsizetype insertReplacement(StyledText &styled, const QString &replacement)
{
    const TextRange match = styled.runs.last().range;
    styled.runs.last().strikeOut = match.length > 0;
    const QString shown = shownReplacement(replacement);
    if (shown.isEmpty())
        return 0;
    const qsizetype place = std::min(match.end(), styled.text.size());
    styled.text.insert(place, shown);
    styled.runs << StyledRun{{place, shown.size()}, TD_COLOR_BLACK, REPLACEMENT_BACKGROUND, true, {}};
    return shown.size();
}

/// Text that was put in is underlined, before it is written and afterwards.
StyledRun runOfMatch(const TDMatchLine &line, qsizetype index, TextRange range)
{
    const bool isReplaced = line.isReplaced(index);
    const bool isHighlighted = index == line.highlightedMatchIndex();
    const StyledColor background = isHighlighted ? HIGHLIGHTED_MATCH_BACKGROUND
                                   : isReplaced  ? REPLACED_MATCH_BACKGROUND
                                                 : MATCH_BACKGROUND;
    return {range, TD_COLOR_BLACK, background, isReplaced, {}};
}

void appendProblem(StyledText &styled, const QString &problem)
{
    const qsizetype start = styled.text.size();
    styled.text += QStringLiteral("   ") + QChar(WARNING_SIGN) + u' ' + problem;
    styled.runs << StyledRun{{start, styled.text.size() - start}, PROBLEM_COLOR, {}, false, {}};
}

} // namespace

MatchLineLook matchLineLook(const TDMatchLine &line, bool selected, const LinePreview *preview)
{
    const QString prefix = QString::number(line.lineNumber()) + QStringLiteral(": ");
    const QString text = line.matchLineString();
    const QList<TextRange> ranges = line.matchRanges();
    const TextRange body = rangeWithoutNewlinesAtEnds(text);

    MatchLineLook look;
    StyledText &styled = look.styled;
    styled.text = prefix + withVisibleControls(QStringView(text).sliced(body.location, body.length));
    styled.font = {QStringLiteral("Lucida Grande"), SMALL_SYSTEM_FONT_SIZE};
    styled.lineBreakMode = LineBreakMode::WrapByCharacter;
    styled.runs.reserve(ranges.size() + 2);
    styled.runs << StyledRun{{}, selected ? TD_COLOR_WHITE : TD_COLOR_BLACK, {}, false, {}};
    qsizetype moved = prefix.size();
    for (qsizetype index = 0; index < ranges.size(); ++index) {
        // Positions are those in the untrimmed line, also on a line that begins with line-break characters.
        styled.runs << runOfMatch(line, index, {moved + ranges[index].location, ranges[index].length});
        look.matches << styled.runs.last().range;
        if (const auto shown = preview != nullptr ? preview->replacements.value(index) : std::nullopt)
            moved += insertReplacement(styled, *shown);
    }
    if (preview != nullptr && !preview->problem.isEmpty())
        appendProblem(styled, preview->problem);
    styled.runs.first().range = styled.wholeRange();
    if (!ranges.isEmpty())
        styled.runs << StyledRun{{0, prefix.size()}, LINE_NUMBER_COLOR, {}, false, {}};
    return look;
}

StyledText buildMatchLineAttributedString(const TDMatchLine &line, bool selected)
{
    return matchLineLook(line, selected, nullptr).styled;
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
