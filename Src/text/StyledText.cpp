#include "text/StyledText.h"

namespace tidemark {

namespace {

std::optional<StyledColor> lastGiven(const QList<StyledRun> &runs, qint64 index,
                                     std::optional<StyledColor> StyledRun::*attribute)
{
    for (auto run = runs.crbegin(); run != runs.crend(); ++run) {
        if (index >= run->range.location && index < run->range.end() && (*run).*attribute)
            return (*run).*attribute;
    }
    return {};
}

} // namespace

std::optional<StyledColor> StyledText::foregroundAt(qint64 index) const
{
    return lastGiven(runs, index, &StyledRun::foreground);
}

std::optional<StyledColor> StyledText::backgroundAt(qint64 index) const
{
    return lastGiven(runs, index, &StyledRun::background);
}

StyledText hyperlinkFromString(const QString &text, const QUrl &url)
{
    StyledText styled;
    styled.text = text;
    styled.runs << StyledRun{styled.wholeRange(), TD_COLOR_BLUE, {}, true, url};
    return styled;
}

} // namespace tidemark
