#include "session/ContextMatches.h"

#include "session/ReplacementPreview.h"

#include <algorithm>

namespace tidemark {

namespace {

/// The listed line with the number, or the one before, which can have become several.
const TDMatchLine *lineAtOrBefore(const TDFindResultItem &file, qint64 number)
{
    const TDMatchLine *found = nullptr;
    if (const FileMatches *matches = file.matches()) {
        const auto behind =
            std::upper_bound(matches->lines.begin(), matches->lines.end(), number,
                             [](qint64 wanted, const auto &line) { return wanted < line->lineNumber(); });
        return behind == matches->lines.begin() ? nullptr : (behind - 1)->get();
    }
    for (const auto &item : file.children()) {
        if (item->matchLine() != nullptr && item->matchLine()->lineNumber() <= number)
            found = item->matchLine();
    }
    return found;
}

bool isLineEnd(QStringView text, qsizetype index)
{
    const bool isPair = text[index] == u'\r' && index + 1 < text.size() && text[index + 1] == u'\n';
    return text[index] == u'\n' || (text[index] == u'\r' && !isPair);
}

/// Where in the saved text the line is that so many lines are before.
TextRange rangeOfLine(QStringView saved, qint64 linesBefore)
{
    qsizetype start = 0;
    for (qsizetype index = 0; index < saved.size(); ++index) {
        if (!isLineEnd(saved, index))
            continue;
        if (linesBefore-- == 0) {
            const bool isPair = index > start && saved[index - 1] == u'\r' && saved[index] == u'\n';
            return {start, index - start - (isPair ? 1 : 0)};
        }
        start = index + 1;
    }
    return linesBefore == 0 ? TextRange{start, saved.size() - start} : TextRange::notFound();
}

} // namespace

QList<ContextMatch> contextMatches(const TDFindResultItem &file, qint64 lineNumber, const QString &text,
                                   const ReplacementPreview *preview)
{
    const TDMatchLine *line = lineAtOrBefore(file, lineNumber);
    // Only one that was changed can be several by now.
    const bool isOther = line != nullptr && line->lineNumber() != lineNumber;
    if (line == nullptr || (isOther && !line->unchangedUtf8().isNull()))
        return {};
    const QString saved = line->savedLineString();
    const TextRange shown = rangeOfLine(saved, lineNumber - line->lineNumber());
    if (!shown.isFound() || QStringView(saved).mid(shown.location, shown.length) != text)
        return {};
    const QList<TextRange> ranges = line->savedMatchRanges();
    const LinePreview become =
        preview != nullptr ? preview->ofLine(*line, file.encoding().encoding) : LinePreview();
    QList<ContextMatch> matches;
    for (qsizetype index = 0; index < ranges.size(); ++index) {
        const qint64 start = std::max(ranges[index].location, shown.location);
        const qint64 end = std::min(ranges[index].end(), shown.end());
        if (start <= end)
            matches << ContextMatch{{start - shown.location, end - start},
                                    index == line->highlightedMatchIndex(),
                                    line->isReplaced(index),
                                    become.replacements.value(index)};
    }
    return matches;
}

} // namespace tidemark
