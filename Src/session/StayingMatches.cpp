#include "session/StayingMatches.h"

#include "session/ReplacementPreview.h"

#include <QElapsedTimer>

#include <numeric>

namespace tidemark {

namespace {

constexpr std::chrono::milliseconds LONGEST_WAIT(400);
constexpr qsizetype LINES_AT_ONCE = 1000;

quint64 openMatches(const TDMatchLine &line)
{
    return line.numberOfMatches() - line.numberOfReplacedMatches();
}

/// Takes so many lines at a time that the wait is looked at now and then.
class StayingInLines
{
public:
    StayingInLines(const SearchTerms &terms, const QString &replaceText)
        : _preview(terms.findText, replaceText, terms.options)
    {
        _timer.start();
    }

    std::optional<quint64> of(const FindResultItems &lines) const
    {
        quint64 sum = 0;
        for (qsizetype next = 0; next < lines.size(); next += LINES_AT_ONCE) {
            QList<const TDMatchLine *> some;
            for (const auto &line : lines.mid(next, LINES_AT_ONCE))
                some << line->matchLine();
            const std::chrono::milliseconds left = LONGEST_WAIT - std::chrono::milliseconds(_timer.elapsed());
            const auto staying = left.count() > 0 ? _preview.staying(some, left) : std::nullopt;
            if (!staying)
                return {};
            sum = std::accumulate(staying->begin(), staying->end(), sum);
        }
        return sum;
    }

private:
    ReplacementPreview _preview;
    QElapsedTimer _timer;
};

} // namespace

std::optional<StayingMatches> stayingMatches(const LinesByFile &lines, const SearchTerms &terms,
                                             const QString &replaceText)
{
    const StayingInLines stayingInLines(terms, replaceText);
    StayingMatches sum;
    for (const auto &[file, ofFile] : lines) {
        const auto staying = stayingInLines.of(ofFile);
        if (!staying)
            return {};
        const quint64 open =
            std::accumulate(ofFile.begin(), ofFile.end(), quint64(0), [](quint64 before, const auto &line) {
                return before + openMatches(*line->matchLine());
            });
        sum.matches += *staying;
        sum.files += open > 0 && open == *staying ? 1 : 0;
    }
    return sum;
}

} // namespace tidemark
