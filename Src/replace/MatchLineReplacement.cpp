#include "replace/MatchLineReplacement.h"

namespace tidemark {

namespace {

TextRange cutToLine(TextRange range, qint64 lineLength)
{
    const qint64 location = qBound(qint64(0), range.location, lineLength);
    return {location, qBound(qint64(0), range.length, lineLength - location)};
}

} // namespace

std::optional<AppliedReplacement> replaceMatch(TDMatchLine &line, qint64 index,
                                               const TDReplacement &replacement, TDError &error)
{
    const QString &text = line.matchLineString();
    const TextRange range = cutToLine(line.matchRanges().at(index), text.size());
    const QStringView matchedText = QStringView(text).sliced(range.location, range.length);
    const QString foundLine = replacement.looksAtLine() ? line.foundLineString() : QString();
    const std::optional<QString> replaced =
        TDReplacement::InLine(replacement, foundLine)
            .replacementFor(line.foundRanges().at(index), matchedText, error);
    if (!replaced)
        return {};

    QString newText = text;
    newText.replace(range.location, range.length, *replaced);
    line.setMatchLineString(newText);
    const AppliedReplacement applied = {replaced->size(), replaced->size() - range.length};
    line.replaceMatchRange(index, {range.location, applied.newLength});
    if (*replaced != matchedText)
        line.setReplaced(index);
    line.offsetMatchRangesBy(applied.offset, quint64(index) + 1);
    return applied;
}

ReplacedLine replacedLine(const TDMatchLine &line, const TDReplacement &replacement,
                          const std::function<bool()> &shouldStop, TDError &error)
{
    const QString text = line.matchLineString();
    ReplacedLine result{{}, line.matchRanges(), 0, 0, line.replacedMatches()};
    result.replaced.resize(size_t(result.ranges.size()));
    const QList<TextRange> foundRanges = replacement.looksAtLine() ? line.foundRanges() : result.ranges;
    const QString foundLine = replacement.looksAtLine() ? line.foundLineString() : QString();
    TDReplacement::InLine replacementInLine(replacement, foundLine);
    qint64 copied = 0;
    qsizetype index = 0;
    for (; index < result.ranges.size() && !shouldStop(); ++index) {
        TextRange &range = result.ranges[index];
        range = cutToLine(range, text.size());
        const bool isReplaced = result.replaced[size_t(index)];
        const QStringView matched = QStringView(text).sliced(range.location, range.length);
        const auto replaced = isReplaced
                                  ? std::optional(matched.toString())
                                  : replacementInLine.replacementFor(foundRanges[index], matched, error);
        if (!replaced)
            break;
        const qint64 location = qMax(range.location, copied);
        result.text += QStringView(text).sliced(copied, location - copied);
        copied = qMax(copied, range.end());
        range = {result.text.size(), replaced->size()};
        result.text += *replaced;
        if (isReplaced)
            continue;
        // What stays as it is, as when the find text was changed, may be replaced later.
        result.replaced[size_t(index)] = *replaced != matched;
        ++result.count;
        result.lastLength = replaced->size();
    }
    const qint64 offset = result.text.size() - copied;
    result.text += QStringView(text).sliced(copied);
    for (; index < result.ranges.size(); ++index)
        result.ranges[index].location += offset;
    return result;
}

ReplacedMatches replaceMatches(TDMatchLine &line, const TDReplacement &replacement,
                               const std::function<bool()> &shouldStop, TDError &error)
{
    const ReplacedLine result = replacedLine(line, replacement, shouldStop, error);
    line.setMatchLineString(result.text);
    line.setMatchRanges(result.ranges);
    line.setReplacedMatches(result.replaced);
    return {result.count, result.lastLength};
}

void SavedMatchLine::restore(TDMatchLine &line) const
{
    line.setMatchLineString(_text);
    line.setMatchRanges(_ranges);
    line.setFoundRanges(_foundRanges);
    line.setReplacedMatches(_replaced);
    line.setHighlightedMatchIndex(_highlightedMatchIndex);
}

} // namespace tidemark
