#include "window/ResultsNavigation.h"

#include "foundation/CharacterSets.h"
#include "window/ResultsTreeModel.h"
#include "window/TDSearchResultsOutlineView.h"

#include <algorithm>

namespace tidemark {

// -- Keeping the lines' flags and the highlight with the selection

void ResultsNavigation::_selectionDidChange(const QItemSelection &selected, const QItemSelection &deselected)
{
    _setSelectedFlags(deselected, false);
    _setSelectedFlags(selected, true);
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

void ResultsNavigation::_setSelectedFlags(const QItemSelection &selection, bool selected)
{
    for (const QItemSelectionRange &range : selection) {
        const auto file = _model.item(range.parent());
        if (!file)
            continue;
        for (int row = range.top(); row <= range.bottom(); ++row) {
            TDMatchLine *line = file->children()[row]->matchLine();
            if (line == nullptr || line->selected() == selected)
                continue;
            line->setSelected(selected);
            line->updateMatchLineAttributeString();
        }
    }
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

void ResultsNavigation::_itemDidCollapse(const QModelIndex &file)
{
    _itemWillCollapse = false;
    const auto item = _model.item(file);
    for (const auto &child : item->children()) {
        if (child->matchLine() != nullptr && child->matchLine()->selected()) {
            child->matchLine()->setSelected(false);
            child->matchLine()->updateMatchLineAttributeString();
        }
    }
    determineIfFirstOrLastItemSelected();
}

// -- What is selected

std::shared_ptr<TDFindResultItem> ResultsNavigation::currentlySelectedFindResultItem() const
{
    return _view.itemAtRow(_view.selectedRow());
}

bool ResultsNavigation::hasSelection() const
{
    return _view.selectionModel()->hasSelection();
}

QList<ResultPath> ResultsNavigation::_selectedPaths() const
{
    QList<ResultPath> paths;
    for (const QItemSelectionRange &range : _view.selectionModel()->selection()) {
        const QModelIndex file = range.parent();
        for (int row = range.top(); row <= range.bottom(); ++row)
            paths << (file.isValid() ? ResultPath{file.row(), row} : ResultPath{row});
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::optional<ResultPath> ResultsNavigation::_lastSelectedPath() const
{
    std::optional<ResultPath> last;
    for (const QItemSelectionRange &range : _view.selectionModel()->selection()) {
        const QModelIndex file = range.parent();
        const ResultPath path =
            file.isValid() ? ResultPath{file.row(), range.bottom()} : ResultPath{range.bottom()};
        if (!last || *last < path)
            last = path;
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
    QStringList lines;
    for (const auto &item : selectedObjects()) {
        if (item->matchLine() == nullptr)
            continue;
        const QString &line = item->matchLine()->matchLineString();
        const TextRange body = rangeWithoutNewlinesAtEnds(line);
        lines << line.sliced(body.location, body.length);
    }
    return lines.isEmpty() ? QString() : lines.join(QLatin1Char('\n'));
}

// -- Removing

void ResultsNavigation::removeSelected()
{
    if (!_isRemovalEnabled || !hasSelection())
        return;
    const ResultsRemoval removal =
        ResultsRemoval::ofSelection(_selectedPaths(), int(_results.count()),
                                    [this](int file) { return int(_model.file(file)->children().size()); });
    const FindResultItems items = _itemsAt(removal.paths);
    _view.selectionModel()->clearSelection();
    _setCurrentItem(nullptr);
    _results.remove(items);
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
