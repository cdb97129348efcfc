#include "session/ResultsRemoval.h"

#include <QHash>

#include <algorithm>

namespace tidemark {

namespace {

using LineCount = std::function<int(int file)>;

/// The lines of wholly selected files give way to the files.
QList<ResultPath> pathsToRemove(const QList<ResultPath> &selection, const LineCount &lineCount)
{
    QHash<int, int> selectedLines;
    for (const ResultPath &path : selection) {
        if (path.isLine())
            ++selectedLines[path.file];
    }
    QList<ResultPath> paths;
    for (const ResultPath &path : selection) {
        const bool isWhole = path.isLine() && selectedLines[path.file] == lineCount(path.file);
        const ResultPath chosen = isWhole ? ResultPath{path.file} : path;
        if (paths.isEmpty() || paths.last() != chosen)
            paths << chosen;
    }
    return paths;
}

/// The greatest file, with the greatest line met on the way to it, even if that is another file's.
ResultPath anchorOf(const QList<ResultPath> &paths)
{
    ResultPath anchor = {-1, -1};
    for (const ResultPath &path : paths) {
        if (path.file < anchor.file)
            continue;
        anchor.file = path.file;
        anchor.line = std::max(anchor.line, path.line);
    }
    return anchor;
}

ResultPath itemAfter(ResultPath anchor, int fileCount, const LineCount &lineCount)
{
    if (anchor.isLine() && anchor.line < lineCount(anchor.file) - 1)
        return {anchor.file, anchor.line + 1};
    return {anchor.file + 1 < fileCount ? anchor.file + 1 : 0};
}

} // namespace

ResultsRemoval ResultsRemoval::ofSelection(const QList<ResultPath> &selection, int fileCount,
                                           const LineCount &lineCount)
{
    ResultsRemoval removal;
    removal.paths = pathsToRemove(selection, lineCount);
    if (removal.paths.isEmpty())
        return removal;
    const ResultPath next = itemAfter(anchorOf(removal.paths), fileCount, lineCount);
    ResultPath corrected = next;
    for (const ResultPath &path : std::as_const(removal.paths)) {
        if (!path.isLine())
            --corrected.file;
        else if (next.isLine() && path.file == next.file)
            --corrected.line;
    }
    removal.selectedAfterwards = {std::max(0, corrected.file), std::max(0, corrected.line)};
    return removal;
}

} // namespace tidemark
