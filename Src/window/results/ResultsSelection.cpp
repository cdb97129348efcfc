#include "window/results/ResultsNavigation.h"

#include "text/CharacterSets.h"
#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <algorithm>

namespace tidemark {

// -- Keeping the highlight with the selection

void ResultsNavigation::_selectionDidChange()
{
    const auto item = currentlySelectedFindResultItem();
    if (item && item->isMatchLine()) {
        _setCurrentItem(item);
        highlightFirstMatchInCurrentlySelectedMatchLine();
    } else if (item) {
        _fileWasSelected(_view.selectedRow());
    }
    determineIfFirstOrLastItemSelected();
    Q_EMIT selectionChanged();
}

void ResultsNavigation::_fileWasSelected(int row)
{
    const QModelIndex file = _view.indexAtRow(row);
    if (_itemWillCollapse) {
        // The line that was current goes out of sight.
        _setCurrentItem(_model.item(file));
        return;
    }
    _view.expandItem(file);
    const auto line = _view.itemAtRow(row + 1);
    if (!line || !line->isMatchLine())
        return;
    _setCurrentItem(line);
    highlightFirstMatchInCurrentlySelectedMatchLine();
}

void ResultsNavigation::_itemDidCollapse()
{
    _itemWillCollapse = false;
    determineIfFirstOrLastItemSelected();
}

// -- What is selected

std::shared_ptr<TDFindResultItem> ResultsNavigation::currentlySelectedFindResultItem() const
{
    return _view.itemAtRow(_view.selectedRow());
}

bool ResultsNavigation::hasSelection() const
{
    return !_view.selectedRows().isEmpty();
}

QList<ResultPath> ResultsNavigation::_selectedPaths() const
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

std::optional<ResultPath> ResultsNavigation::_lastSelectedPath() const
{
    const SelectedRows &selected = _view.selectedRows();
    std::optional<ResultPath> last;
    for (const TDFindResultItem *file : selected.files())
        last = std::max(last, std::optional(ResultPath{_model.indexOf(file).row()}));
    for (auto lines = selected.lines().cbegin(); lines != selected.lines().cend(); ++lines) {
        const ResultPath path = {_model.indexOf(lines.key()).row(), lines->rbegin()->second};
        last = std::max(last, std::optional(path));
    }
    return last;
}

std::shared_ptr<TDFindResultItem> ResultsNavigation::_itemAt(ResultPath path) const
{
    const auto &file = _model.file(path.file);
    return path.isLine() ? file->children()[path.line] : file;
}

FindResultItems ResultsNavigation::_itemsAt(const QList<ResultPath> &paths) const
{
    FindResultItems items;
    items.reserve(paths.size());
    for (const ResultPath &path : paths)
        items << _itemAt(path);
    return items;
}

FindResultItems ResultsNavigation::selectedObjects() const
{
    return _itemsAt(_selectedPaths());
}

FilePath ResultsNavigation::pathOfCurrentlySelectedItem() const
{
    const auto item = currentlySelectedFindResultItem();
    if (!item)
        return {};
    return item->parent() != nullptr ? item->parent()->path() : item->path();
}

QString ResultsNavigation::selectedLines() const
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

// -- Removing

void ResultsNavigation::removeSelected()
{
    if (!_isRemovalEnabled || !hasSelection())
        return;
    const ResultsRemoval removal =
        ResultsRemoval::ofSelection(_selectedPaths(), int(_results.count()),
                                    [this](int file) { return int(_model.file(file)->children().size()); });
    FindResultItems items = _itemsAt(removal.paths);
    _view.clearSelectedRows();
    _setCurrentItem(nullptr);
    _results.remove(items);
    releaseInBackground(std::move(items));
    _selectPath(removal.selectedAfterwards);
    determineIfFirstOrLastItemSelected();
    Q_EMIT selectionChanged();
}

/// Selects the line, or the nearest one there is.
void ResultsNavigation::_selectPath(ResultPath path)
{
    if (_results.isEmpty())
        return;
    const QModelIndex file = _model.index(std::min(path.file, int(_results.count()) - 1), 0);
    _view.expandItem(file);
    const int line = std::min(path.line, _model.rowCount(file) - 1);
    _view.selectRow(_view.rowOfIndex(file) + 1 + line);
    _view.scrollRowToVisible(_view.selectedRow());
}

} // namespace tidemark
