#pragma once

#include <QList>

#include <compare>
#include <functional>

namespace tidemark {

/// Where a node stands in the results as they are shown: a file, or a line of a file. Both count from 0.
struct ResultPath
{
    int file = 0;
    int line = -1; ///< -1: the file itself

    bool isLine() const { return line >= 0; }
    friend auto operator<=>(const ResultPath &, const ResultPath &) = default;
};

/// What is removed when a selection is removed from the results, and what is selected afterwards.
struct ResultsRemoval
{
    QList<ResultPath> paths;
    /// Counted after the removal. Always a line; nothing need exist there any more.
    ResultPath selectedAfterwards;

    /// `selection` is in ascending order. A file whose lines are all selected is removed itself.
    static ResultsRemoval ofSelection(const QList<ResultPath> &selection, int fileCount,
                                      const std::function<int(int file)> &lineCount);
};

} // namespace tidemark
