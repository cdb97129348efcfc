#include "session/ReplacementPreview.h"

#include "foundation/AbandonableWork.h"
#include "foundation/LocalizedText.h"
#include "replace/TDReplacement.h"

#include <QElapsedTimer>

#include <algorithm>

namespace tidemark {

namespace {

constexpr std::chrono::milliseconds LONGEST_COMPILATION_SHOWN(100);
/// For all lines together that take longer than usual.
constexpr std::chrono::milliseconds LONGEST_FOR_SLOW_LINES(250);
constexpr std::chrono::milliseconds USUAL_FOR_LINE(10);

/// A match line as it was when the work began, which may go on when the line is gone.
struct LineToReplaceIn
{
    explicit LineToReplaceIn(const TDMatchLine &line)
        : text(line.matchLineString()), ranges(line.matchRanges()), foundText(line.foundLineString()),
          foundRanges(line.foundRanges()), replaced(line.replacedMatches())
    {}

    bool isOpen(qsizetype index) const
    {
        return index < foundRanges.size() && (size_t(index) >= replaced.size() || !replaced[size_t(index)]);
    }

    QString text;
    QList<TextRange> ranges;
    QString foundText;
    QList<TextRange> foundRanges;
    std::vector<bool> replaced;
};

LinePreview previewOf(const LineToReplaceIn &line, const TDReplacement &replacement)
{
    LinePreview preview;
    preview.replacements.resize(line.ranges.size());
    TDReplacement::InLine inLine(replacement, line.foundText);
    TDError error;
    for (qsizetype index = 0; index < line.ranges.size() && !error; ++index) {
        if (!line.isOpen(index))
            continue;
        const TextRange range = line.ranges[index];
        const QStringView matched = QStringView(line.text).mid(range.location, range.length);
        const std::optional<QString> instead = inLine.replacementFor(line.foundRanges[index], matched, error);
        if (instead && *instead != matched)
            preview.replacements[index] = instead;
    }
    if (error)
        preview.problem = error.localizedFailureReason();
    return preview;
}

quint64 countStaying(const LineToReplaceIn &line, const LinePreview &preview)
{
    quint64 count = 0;
    for (qsizetype index = 0; index < line.ranges.size(); ++index)
        count += line.isOpen(index) && !preview.replacements[index] ? 1 : 0;
    return count;
}

/// The first character of the text that can't be encoded; empty when all can.
QString firstMissing(QStringView text, TextConverter &converter)
{
    if (converter.encode(text))
        return {};
    for (qsizetype index = 0; index < text.size();) {
        const bool isPair =
            text[index].isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate();
        const QStringView character = text.sliced(index, isPair ? 2 : 1);
        if (!converter.encode(character))
            return character.toString();
        index += character.size();
    }
    return text.toString();
}

QString encodingProblem(const QList<std::optional<QString>> &replacements, StringEncoding encoding)
{
    const auto converter =
        encoding != TD_FILE_COMMON_UNKNOWN_ENCODING ? TextConverter::converterForEncoding(encoding) : nullptr;
    if (!converter)
        return {};
    for (const std::optional<QString> &replacement : replacements) {
        const QString missing = replacement ? firstMissing(*replacement, *converter) : QString();
        if (!missing.isEmpty())
            return formatted(localizedString("%@ cannot hold ‘%@’"),
                             {localizedNameOfStringEncoding(encoding), missing});
    }
    return {};
}

} // namespace

ReplacementPreview::ReplacementPreview(const QString &findText, const QString &replaceText,
                                       const FindOptions &options)
    : _isPlain(options.mode == SearchMode::PlainText), _timeLeft(LONGEST_FOR_SLOW_LINES)
{
    const auto make = [findText, replaceText, options]() -> std::shared_ptr<const TDReplacement> {
        return std::make_shared<const TDReplacement>(findText, replaceText, options,
                                                     ReplacementExtent::EveryOccurrence);
    };
    _replacement = _isPlain ? make() : resultOfAbandonable(make, LONGEST_COMPILATION_SHOWN).value_or(nullptr);
    if (!_replacement)
        _timeLeft = {};
}

std::optional<QList<quint64>> ReplacementPreview::staying(const QList<const TDMatchLine *> &lines,
                                                          std::chrono::milliseconds allowed) const
{
    if (!_replacement)
        return {};
    std::vector<LineToReplaceIn> linesNow;
    linesNow.reserve(size_t(lines.size()));
    for (const TDMatchLine *line : lines)
        linesNow.emplace_back(*line);
    const auto count = [linesNow = std::move(linesNow), replacement = _replacement] {
        std::optional<QList<quint64>> counts(std::in_place);
        for (const LineToReplaceIn &line : linesNow) {
            const LinePreview preview = previewOf(line, *replacement);
            if (!preview.problem.isEmpty())
                return std::optional<QList<quint64>>();
            *counts << countStaying(line, preview);
        }
        return counts;
    };
    return resultOfAbandonable(count, allowed).value_or(std::nullopt);
}

LinePreview ReplacementPreview::ofLine(const TDMatchLine &line, StringEncoding encoding) const
{
    const auto look = [lineNow = LineToReplaceIn(line), replacement = _replacement] {
        return previewOf(lineNow, *replacement);
    };
    std::optional<LinePreview> preview;
    if (_isPlain) {
        preview = look();
    } else if (!hasGivenUp()) {
        QElapsedTimer timer;
        timer.start();
        preview = resultOfAbandonable(look, _timeLeft);
        const std::chrono::milliseconds taken(timer.elapsed());
        if (!preview)
            _timeLeft = {};
        else if (taken > USUAL_FOR_LINE)
            _timeLeft -= taken;
    }
    if (!preview)
        return {{}, localizedString("The expression takes too long to show what becomes of its matches")};
    if (preview->problem.isEmpty())
        preview->problem = encodingProblem(preview->replacements, encoding);
    return *preview;
}

} // namespace tidemark
