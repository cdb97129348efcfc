#include "window/results/ResultsSelection.h"

#include "text/CharacterSets.h"
#include "window/results/LastSelectedPath.h"
#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsOutlineView.h"

namespace tidemark {

std::shared_ptr<TDFindResultItem> ResultsSelection::currentlySelectedFindResultItem() const
{
    return _view.itemAtRow(_view.selectedRow());
}

bool ResultsSelection::hasSelection() const
{
    return !_view.selectedRows().isEmpty();
}

QList<ResultPath> ResultsSelection::paths() const
{
    const SelectedRows &selected = _view.selectedRows();
    QList<ResultPath> paths;
    for (int row = 0; row < int(_results.count()) && !selected.isEmpty(); ++row) {
        const TDFindResultItem *file = _model.file(row).get();
        if (selected.files().contains(file))
            paths << ResultPath{row};
        for (const auto &[first, last] : selected.lines().value(file)) {
            for (int line = first; line <= last; ++line)
                paths << ResultPath{row, line};
        }
    }
    return paths;
}

std::optional<ResultPath> ResultsSelection::lastPath() const
{
    return lastSelectedPath(_view.selectedRows(), _model);
}

std::shared_ptr<TDFindResultItem> ResultsSelection::itemAt(ResultPath path) const
{
    const auto &file = _model.file(path.file);
    return path.isLine() ? file->children()[path.line] : file;
}

FindResultItems ResultsSelection::itemsAt(const QList<ResultPath> &paths) const
{
    FindResultItems items;
    items.reserve(paths.size());
    for (const ResultPath &path : paths)
        items << itemAt(path);
    return items;
}

FindResultItems ResultsSelection::selectedObjects() const
{
    return itemsAt(paths());
}

FilePath ResultsSelection::pathOfCurrentlySelectedItem() const
{
    const auto item = currentlySelectedFindResultItem();
    if (!item)
        return {};
    return item->parent() != nullptr ? item->parent()->path() : item->path();
}

QString ResultsSelection::selectedLines() const
{
    QString lines;
    for (const auto &item : selectedObjects()) {
        if (item->matchLine() == nullptr)
            continue;
        const QString &line = item->matchLine()->matchLineString();
        const TextRange body = rangeWithoutNewlinesAtEnds(line);
        // An empty line is one as well.
        if (lines.isNull())
            lines = QStringLiteral("");
        else
            lines += QLatin1Char('\n');
        lines += QStringView(line).sliced(body.location, body.length);
    }
    return lines;
}

} // namespace tidemark
