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
    line.offsetMatchRangesBy(applied.offset, quint64(index) + 1);
    return applied;
}

ReplacedMatches replaceMatches(TDMatchLine &line, const TDReplacement &replacement,
                               const std::function<bool()> &shouldStop, TDError &error)
{
    const QString text = line.matchLineString();
    QList<TextRange> ranges = line.matchRanges();
    const QList<TextRange> foundRanges = replacement.looksAtLine() ? line.foundRanges() : ranges;
    const QString foundLine = replacement.looksAtLine() ? line.foundLineString() : QString();
    TDReplacement::InLine replacementInLine(replacement, foundLine);
    ReplacedMatches done;
    QString newText;
    qint64 copied = 0;
    for (TextRange &range : ranges) {
        if (shouldStop())
            break;
        range = cutToLine(range, text.size());
        const auto replaced = replacementInLine.replacementFor(
            foundRanges[done.count], QStringView(text).sliced(range.location, range.length), error);
        if (!replaced)
            break;
        const qint64 location = qMax(range.location, copied);
        newText += QStringView(text).sliced(copied, location - copied);
        copied = qMax(copied, range.end());
        range = {newText.size(), replaced->size()};
        newText += *replaced;
        ++done.count;
        done.lastLength = replaced->size();
    }
    const qint64 offset = newText.size() - copied;
    newText += QStringView(text).sliced(copied);
    for (qint64 index = done.count; index < ranges.size(); ++index)
        ranges[index].location += offset;
    line.setMatchLineString(newText);
    line.setMatchRanges(ranges);
    return done;
}

void SavedMatchLine::restore(TDMatchLine &line) const
{
    line.setMatchLineString(_text);
    line.setMatchRanges(_ranges);
    line.setFoundRanges(_foundRanges);
    line.setHighlightedMatchIndex(_highlightedMatchIndex);
}

} // namespace tidemark
