#include "window/results/ResultsNavigation.h"

#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace tidemark {

bool ResultsNavigation::_showHideState = false;

ResultsNavigation::ResultsNavigation(FindResults &results, ResultsTreeModel &model,
                                     TDSearchResultsOutlineView &view, QObject *parent)
    : QObject(parent), _results(results), _model(model), _view(view), _selection(results, model, view)
{
    connect(&_view, &TDSearchResultsOutlineView::selectedRowsChanged, this,
            &ResultsNavigation::_selectionDidChange);
    connect(&_view, &TDSearchResultsOutlineView::itemWillCollapse, this,
            [this] { _itemWillCollapse = true; });
    connect(&_view, &TDSearchResultsOutlineView::itemDidCollapse, this, &ResultsNavigation::_itemDidCollapse);
    connect(&_view, &TDSearchResultsOutlineView::itemDidExpand, this,
            &ResultsNavigation::determineIfFirstOrLastItemSelected);
    connect(&_results, &FindResults::appended, this, &ResultsNavigation::determineIfFirstOrLastItemSelected);
    connect(&_results, &FindResults::grown, this, &ResultsNavigation::determineIfFirstOrLastItemSelected);
    connect(&_results, &FindResults::filtered, this, &ResultsNavigation::_resumeAfterFiltering);
    connect(&_results, &FindResults::thinnedOut, this, [this] {
        if (_currentItem && !_results.shows(*_currentItem))
            _currentItem.reset();
    });
    connect(&_results, &FindResults::aboutToClear, this, [this] { _currentItem.reset(); });
    connect(&_results, &FindResults::cleared, this, [this] {
        determineIfFirstOrLastItemSelected();
        Q_EMIT selectionChanged();
    });
}

// -- Walking

void ResultsNavigation::_focusView()
{
    _view.setFocus();
}

void ResultsNavigation::moveToNextMatch()
{
    _focusView();
    _performMoveToNextMatch(false);
}

void ResultsNavigation::moveToPreviousMatch()
{
    _focusView();
    _performMoveToPreviousMatch(false);
}

void ResultsNavigation::moveToNextMatchByExtendingSelection()
{
    _focusView();
    _performMoveToNextMatch(true);
}

void ResultsNavigation::moveToPreviousMatchByExtendingSelection()
{
    _focusView();
    _performMoveToPreviousMatch(true);
}

/// Without a line in sight walking starts at the first one of the selected file, or of all.
bool ResultsNavigation::_hasLineToStartFrom()
{
    if (_results.isEmpty())
        return false;
    if (_currentItem && _currentItem->isMatchLine() && _view.rowOfItem(*_currentItem) >= 0)
        return true;
    const QModelIndex selected = _view.selectedIndex();
    const QModelIndex file = selected.parent().isValid() ? selected.parent() : selected;
    _selectFirstLineOfFile(file.isValid() ? file.row() : 0);
    scrollToHighlightedMatch();
    return false;
}

void ResultsNavigation::_performMoveToNextMatch(bool extend)
{
    if (!_hasLineToStartFrom())
        return;
    _view.selectRow(_view.rowOfItem(*_currentItem), extend);
    if (!extend && moveToNextMatchInMatchLine())
        return;
    const int row = _view.selectedRow();
    if (_view.numberOfRows() >= 2 && row == _view.numberOfRows() - 1)
        return;
    removeHighlightingFromCurrentlySelectedMatchLine();
    _selectRowAfter(row, extend);
    _makeSelectedRowCurrent();
    _view.scrollRowToVisible(_view.selectedRow());
    scrollToHighlightedMatch();
    determineIfFirstOrLastItemSelected();
}

void ResultsNavigation::_selectRowAfter(int row, bool extend)
{
    const auto item = _view.itemAtRow(row + 1);
    if (item && item->isMatchLine()) {
        _view.selectRow(row + 1, extend);
        return;
    }
    const int file = item ? row + 1 : row;
    _view.expandItem(_view.indexAtRow(file));
    _view.selectRow(file + 1, extend);
}

void ResultsNavigation::_performMoveToPreviousMatch(bool extend)
{
    if (!_hasLineToStartFrom())
        return;
    _view.selectRow(_view.rowOfItem(*_currentItem), extend);
    if (!extend && moveToPreviousMatchInMatchLine())
        return;
    const int row = _view.selectedRow();
    if (row <= 1)
        return;
    removeHighlightingFromCurrentlySelectedMatchLine();
    _selectRowBefore(row, extend);
    // A file that was collapsed is selected itself, and its first match is highlighted by now.
    if (_makeSelectedRowCurrent() && !extend)
        highlightLastMatchInCurrentlySelectedMatchLine();
    _view.scrollRowToVisible(_view.selectedRow());
    scrollToHighlightedMatch();
    determineIfFirstOrLastItemSelected();
}

void ResultsNavigation::_selectRowBefore(int row, bool extend)
{
    const auto item = _view.itemAtRow(row - 1);
    if (item && item->isMatchLine()) {
        _view.selectRow(row - 1, extend);
        return;
    }
    // The row before is the line's own file; the one above it belongs to the previous file.
    _view.expandItem(_view.indexAtRow(row - 2));
    _view.selectRow(row - 2, extend);
}

void ResultsNavigation::_selectFirstLineOfFile(int file)
{
    _view.expandItem(_model.index(file, 0));
    _view.selectRow(_view.rowOfIndex(_model.index(file, 0)) + 1);
    _makeSelectedRowCurrent();
    determineIfFirstOrLastItemSelected();
}

void ResultsNavigation::_scrollToFileOfSelectedRow()
{
    _view.scrollRowToVisible(_view.selectedRow());
    _view.scrollRowToVisible(_view.selectedRow() - 1);
    scrollToHighlightedMatch();
}

void ResultsNavigation::selectFirstMatch()
{
    if (_results.isEmpty())
        return;
    _selectFirstLineOfFile(0);
    _scrollToFileOfSelectedRow();
}

bool ResultsNavigation::canMoveToNextFile() const
{
    const std::optional<ResultPath> path = _selection.lastPath();
    return path && path->file < int(_results.count()) - 1;
}

bool ResultsNavigation::canMoveToPreviousFile() const
{
    const std::optional<ResultPath> path = _selection.lastPath();
    return path && (path->file > 0 || path->line > 0);
}

void ResultsNavigation::moveToFirstMatchInNextFile()
{
    _focusView();
    if (!canMoveToNextFile())
        return;
    const std::optional<ResultPath> path = _selection.lastPath();
    _view.clearSelectedRows();
    _selectFirstLineOfFile(path->file + 1);
    _scrollToFileOfSelectedRow();
}

void ResultsNavigation::moveToFirstMatchInFile()
{
    _focusView();
    if (!canMoveToPreviousFile())
        return;
    const std::optional<ResultPath> path = _selection.lastPath();
    if (path->line > 0) {
        _selectFirstLineOfFile(path->file);
    } else {
        _view.clearSelectedRows();
        _selectFirstLineOfFile(path->file - 1);
    }
    _scrollToFileOfSelectedRow();
}

// -- The highlighted match

TDMatchLine *ResultsNavigation::currentlySelectedMatchLine() const
{
    return _currentItem ? _currentItem->matchLine() : nullptr;
}

void ResultsNavigation::_highlight(qint64 index)
{
    TDMatchLine *line = currentlySelectedMatchLine();
    if (line == nullptr)
        return;
    line->setHighlightedMatchIndex(index);
    _model.noteLooksChanged(*_currentItem);
    Q_EMIT selectionChanged();
}

void ResultsNavigation::highlightFirstMatchInCurrentlySelectedMatchLine()
{
    _highlight(0);
}

void ResultsNavigation::highlightLastMatchInCurrentlySelectedMatchLine()
{
    if (const TDMatchLine *line = currentlySelectedMatchLine())
        _highlight(qint64(line->numberOfMatches()) - 1);
}

void ResultsNavigation::removeHighlightingFromCurrentlySelectedMatchLine()
{
    _highlight(TD_NO_HIGHLIGHTED_MATCH);
}

bool ResultsNavigation::moveToNextMatchInMatchLine()
{
    const TDMatchLine *line = currentlySelectedMatchLine();
    if (line == nullptr || line->highlightedMatchIndex() + 1 >= qint64(line->numberOfMatches()))
        return false;
    _view.selectRow(_view.rowOfItem(*_currentItem));
    _highlight(line->highlightedMatchIndex() + 1);
    scrollToHighlightedMatch();
    determineIfFirstOrLastItemSelected();
    return true;
}

bool ResultsNavigation::moveToPreviousMatchInMatchLine()
{
    const TDMatchLine *line = currentlySelectedMatchLine();
    if (line == nullptr || line->highlightedMatchIndex() <= 0)
        return false;
    _highlight(line->highlightedMatchIndex() - 1);
    scrollToHighlightedMatch();
    determineIfFirstOrLastItemSelected();
    return true;
}

void ResultsNavigation::scrollToHighlightedMatch()
{
    const TDMatchLine *line = currentlySelectedMatchLine();
    if (line == nullptr)
        return;
    _view.scrollToMatch(_view.rowOfItem(*_currentItem), line->highlightedMatchIndex());
}

std::shared_ptr<TDFindResultItem> ResultsNavigation::_currentMatchLineItem() const
{
    if (!_currentItem || _currentItem->isMatchLine())
        return _currentItem;
    // A file that was collapsed stands for its first line.
    const FindResultItems &children = _currentItem->children();
    return children.isEmpty() ? nullptr : children.first();
}

bool ResultsNavigation::hasMatchToReplace() const
{
    const auto item = _currentMatchLineItem();
    const TDMatchLine *line = item ? item->matchLine() : nullptr;
    if (line == nullptr || line->numberOfMatches() == 0)
        return false;
    return item != _currentItem || line->highlightedMatchIndex() != TD_NO_HIGHLIGHTED_MATCH;
}

void ResultsNavigation::showCurrentMatchLine()
{
    const auto item = _currentMatchLineItem();
    if (!item)
        return;
    if (item->parent() != nullptr)
        _view.expandItem(_model.indexOf(item->parent()));
    // A line that becomes current has its first match highlighted.
    _view.selectRow(_view.rowOfItem(*item));
    scrollToHighlightedMatch();
}

/// Only one match is ever highlighted.
void ResultsNavigation::_setCurrentItem(const std::shared_ptr<TDFindResultItem> &item)
{
    if (item == _currentItem)
        return;
    removeHighlightingFromCurrentlySelectedMatchLine();
    _currentItem = item;
}

/// False when the selected row is a file's.
bool ResultsNavigation::_makeSelectedRowCurrent()
{
    const auto item = _view.itemAtRow(_view.selectedRow());
    if (!item || !item->isMatchLine())
        return false;
    _setCurrentItem(item);
    highlightFirstMatchInCurrentlySelectedMatchLine();
    return true;
}

// -- First and last

void ResultsNavigation::determineIfFirstItemSelected()
{
    const std::optional<ResultPath> path = _selection.lastPath();
    const TDMatchLine *line = currentlySelectedMatchLine();
    const bool isFirst = path && path->file == 0 && path->line <= 0 && line != nullptr &&
                         _currentItem->position() == 0 && line->highlightedMatchIndex() == 0;
    if (std::exchange(_firstItemSelected, isFirst) != isFirst)
        Q_EMIT firstItemSelectedChanged(isFirst);
}

void ResultsNavigation::determineIfLastItemSelected()
{
    const int rows = _view.numberOfRows();
    const TDMatchLine *line = currentlySelectedMatchLine();
    const bool hasLastHighlighted = line == nullptr || line->numberOfMatches() == 0 ||
                                    line->highlightedMatchIndex() == qint64(line->numberOfMatches()) - 1;
    const bool isLast = rows >= 2 && _view.selectedRow() == rows - 1 && hasLastHighlighted;
    if (std::exchange(_lastItemSelected, isLast) != isLast)
        Q_EMIT lastItemSelectedChanged(isLast);
}

void ResultsNavigation::determineIfFirstOrLastItemSelected()
{
    determineIfFirstItemSelected();
    determineIfLastItemSelected();
}

// -- Expanding and collapsing

void ResultsNavigation::expandCollapseAll()
{
    if (_results.isEmpty())
        return;
    // What was done last can have been in another window, or undone by hand; some step has to be seen.
    const int shown = _view.numberOfExpandedFiles();
    _showHideState = shown == 0 || (!_showHideState && shown < int(_results.count()));
    if (_showHideState)
        _expandEverything();
    else
        _collapseEverything();
    determineIfFirstOrLastItemSelected();
}

void ResultsNavigation::hideAll()
{
    if (_results.isEmpty())
        return;
    _collapseEverything();
    determineIfFirstOrLastItemSelected();
}

void ResultsNavigation::showAll()
{
    _expandEverything();
    determineIfFirstOrLastItemSelected();
}

void ResultsNavigation::_expandEverything()
{
    const int selected = _view.selectedRow();
    const bool wasInSight =
        selected >= 0 && _view.viewport()->rect().intersects(_view.visualRect(_view.indexAtRow(selected)));
    _view.expandAll();
    // The many lines above don't push it away.
    if (wasInSight)
        _view.scrollRowToVisible(_view.selectedRow());
}

void ResultsNavigation::_collapseEverything()
{
    const QScopedValueRollback collapsing(_itemWillCollapse, true);
    _view.selectRow(0);
    _setCurrentItem(_view.itemAtRow(0));
    _view.collapseAll();
    _view.scrollRowToVisible(0);
}

// -- Keeping the highlight with the selection

void ResultsNavigation::_selectionDidChange()
{
    const auto item = _selection.currentlySelectedFindResultItem();
    if (item && item->isMatchLine()) {
        _setCurrentItem(item);
        highlightFirstMatchInCurrentlySelectedMatchLine();
    } else if (item) {
        _fileWasSelected(_view.selectedRow());
    }
    determineIfFirstOrLastItemSelected();
    Q_EMIT selectionChanged();
}

/// The highlighted match stays if it still shows.
void ResultsNavigation::_resumeAfterFiltering()
{
    const auto item = std::exchange(_currentItem, nullptr);
    TDMatchLine *line = item ? item->matchLine() : nullptr;
    const qint64 match = line != nullptr ? line->highlightedMatchIndex() : TD_NO_HIGHLIGHTED_MATCH;
    if (line != nullptr)
        line->setHighlightedMatchIndex(TD_NO_HIGHLIGHTED_MATCH);
    if (line != nullptr && _results.shows(*item)) {
        _view.expandItem(_model.indexOf(item->parent()));
        _view.selectRow(_view.rowOfItem(*item));
        _highlight(match);
        _scrollToFileOfSelectedRow();
    } else {
        selectFirstMatch();
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

// -- Removing

void ResultsNavigation::removeSelected()
{
    if (!_isRemovalEnabled || !_selection.hasSelection())
        return;
    const ResultsRemoval removal =
        ResultsRemoval::ofSelection(_selection.paths(), int(_results.count()),
                                    [this](int file) { return int(_model.file(file)->children().size()); });
    FindResultItems items = _selection.itemsAt(removal.paths);
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
