#include "window/results/MatchLineDisplay.h"

#include "matching/TDFindResultItem.h"
#include "session/ReplacementPreview.h"
#include "text/CharacterSets.h"
#include "window/ShownCharacters.h"

#include <algorithm>
#include <optional>

namespace tidemark {

namespace {

constexpr double SMALL_SYSTEM_FONT_SIZE = 11;
constexpr char16_t WARNING_SIGN = u'\x26A0';
constexpr StyledColor REPLACED_MATCH_BACKGROUND = {168 / 255.0, 222 / 255.0, 178 / 255.0};
constexpr StyledColor REPLACEMENT_BACKGROUND = {203 / 255.0, 236 / 255.0, 206 / 255.0};
constexpr StyledColor LINE_NUMBER_COLOR = {180 / 255.0, 180 / 255.0, 180 / 255.0};
/// How much of a line an excerpt shows in front of its first match.
constexpr qsizetype SHOWN_BEFORE_MATCH = 60;

/// Every control or format character but tabs as one bullet, so that positions in the text don't move.
QString withVisibleControls(QStringView text)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype index = 0; index < text.size(); ++index) {
        const QChar unit = text[index];
        if (unit.isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate()) {
            const char32_t codePoint = QChar::surrogateToUcs4(unit, text[index + 1]);
            if (isControlCharacter(codePoint))
                result += BULLET;
            else
                result += text.sliced(index, 2);
            ++index;
        } else {
            result += isControlCharacter(unit.unicode()) && unit != u'\t' ? BULLET : unit;
        }
    }
    return result;
}

QString shownReplacement(QString text)
{
    text.replace(QLatin1String("\r\n"), QString(RETURN_ARROW));
    text.replace(u'\n', RETURN_ARROW);
    text.replace(u'\r', RETURN_ARROW);
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

QString numberPrefix(const TDMatchLine &line)
{
    return QString::number(line.lineNumber()) + QStringLiteral(": ");
}

/// Characters of two units stay whole.
qsizetype besideCharacter(const QString &text, qsizetype position)
{
    const bool isInside = position > 0 && position < text.size() && text[position].isLowSurrogate() &&
                          text[position - 1].isHighSurrogate();
    return isInside ? position - 1 : position;
}

TextRange excerptRange(const QString &text, const QList<TextRange> &matches)
{
    const TextRange first = matches.value(0);
    qsizetype start = first.end() <= EXCERPT_LENGTH - SHOWN_BEFORE_MATCH
                          ? 0
                          : std::max(qsizetype(0), qsizetype(first.location) - SHOWN_BEFORE_MATCH);
    start = std::max(qsizetype(0), std::min(start, text.size() - EXCERPT_LENGTH));
    const qsizetype end = besideCharacter(text, std::min(text.size(), start + EXCERPT_LENGTH));
    start = besideCharacter(text, start);
    return {start, end - start};
}

/// The part of the range that is left, and where; an empty one stays where it is in sight.
std::optional<TextRange> cutRange(TextRange range, TextRange kept, qint64 moved)
{
    const qint64 start = std::max(range.location, kept.location);
    const qint64 end = std::min(range.end(), kept.end());
    if (end < start || (end == start && range.length > 0))
        return {};
    return TextRange{start + moved, end - start};
}

void cutTo(MatchLineLook &look, TextRange kept, const QString &before, const QString &after)
{
    StyledText &styled = look.styled;
    const qint64 moved = before.size() - kept.location;
    styled.text = before + styled.text.sliced(kept.location, kept.length) + after;
    QList<StyledRun> runs;
    for (StyledRun &run : styled.runs) {
        const std::optional<TextRange> range = cutRange(run.range, kept, moved);
        // The first one is the base of the whole text.
        if (!range && !runs.isEmpty())
            continue;
        run.range = runs.isEmpty() ? styled.wholeRange() : *range;
        runs << run;
    }
    styled.runs = runs;
    for (TextRange &match : look.matches)
        match = cutRange(match, kept, moved).value_or(TextRange{0, 0});
}

/// Text that was put in is underlined, before it is written and afterwards.
StyledRun runOfMatch(const TDMatchLine &line, qsizetype index, TextRange range)
{
    const bool isReplaced = line.isReplaced(index);
    const bool isHighlighted = index == line.highlightedMatchIndex();
    const StyledColor background = isHighlighted ? TD_HIGHLIGHTED_MATCH_BACKGROUND
                                   : isReplaced  ? REPLACED_MATCH_BACKGROUND
                                                 : TD_MATCH_BACKGROUND;
    return {range, TD_COLOR_BLACK, background, isReplaced, {}};
}

void appendProblem(StyledText &styled, const LinePreview *preview)
{
    if (preview == nullptr || preview->problem.isEmpty())
        return;
    const qsizetype start = styled.text.size();
    styled.text += QStringLiteral("   ") + QChar(WARNING_SIGN) + u' ' + preview->problem;
    styled.runs << StyledRun{{start, styled.text.size() - start}, PROBLEM_COLOR, {}, false, {}};
    styled.runs.first().range = styled.wholeRange();
}

MatchLineLook lookWithoutProblem(const TDMatchLine &line, bool selected, const LinePreview *preview)
{
    const QString prefix = numberPrefix(line);
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
    styled.runs.first().range = styled.wholeRange();
    if (!ranges.isEmpty())
        styled.runs << StyledRun{{0, prefix.size()}, LINE_NUMBER_COLOR, {}, false, {}};
    return look;
}

} // namespace

MatchLineLook matchLineLook(const TDMatchLine &line, bool selected, const LinePreview *preview)
{
    MatchLineLook look = lookWithoutProblem(line, selected, preview);
    appendProblem(look.styled, preview);
    return look;
}

StyledText buildMatchLineAttributedString(const TDMatchLine &line, bool selected)
{
    StyledText styled = matchLineLook(line, selected, nullptr).styled;
    styled.text.replace(u'\t', BULLET);
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

ShownLine shownLine(const TDMatchLine &line, const LinePreview *preview, LineExtent extent)
{
    ShownLine shown;
    shown.look = lookWithoutProblem(line, false, preview);
    const qsizetype prefix = numberPrefix(line).size();
    cutTo(shown.look, {prefix, shown.look.styled.text.size() - prefix}, {}, {});
    const QString &text = shown.look.styled.text;
    shown.isLong = text.size() > EXCERPT_LENGTH;
    if (shown.isLong && extent == LineExtent::Excerpt) {
        const TextRange kept = excerptRange(text, shown.look.matches);
        const QString inFront = kept.location > 0 ? QString(ELLIPSIS) : QString();
        const QString behind = kept.end() < text.size() ? QString(ELLIPSIS) : QString();
        cutTo(shown.look, kept, inFront, behind);
    }
    appendProblem(shown.look.styled, preview);
    return shown;
}

} // namespace tidemark
