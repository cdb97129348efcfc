#include "window/results/LastSelectedPath.h"

#include "window/results/ResultsTreeModel.h"

#include <algorithm>

namespace tidemark {

namespace {

/// Where more are selected, the last one is found sooner from the end of all.
constexpr qsizetype FEW_FILES = 1000;

int lastSelectedFile(const SelectedRows &selected, const ResultsTreeModel &model)
{
    int last = -1;
    if (selected.files().size() + selected.lines().size() > FEW_FILES) {
        for (last = model.rowCount() - 1; last >= 0 && !selected.touches(*model.file(last)); --last) {
        }
        return last;
    }
    for (const TDFindResultItem *file : selected.files())
        last = std::max(last, model.indexOf(file).row());
    for (auto lines = selected.lines().cbegin(); lines != selected.lines().cend(); ++lines)
        last = std::max(last, model.indexOf(lines.key()).row());
    return last;
}

} // namespace

std::optional<ResultPath> lastSelectedPath(const SelectedRows &selected, const ResultsTreeModel &model)
{
    const int file = lastSelectedFile(selected, model);
    if (file < 0)
        return {};
    const auto lines = selected.lines().constFind(model.file(file).get());
    return ResultPath{file, lines != selected.lines().cend() ? lines->rbegin()->second : -1};
}

} // namespace tidemark
