#include "window/results/ShownOutline.h"

#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QHeaderView>

namespace tidemark {

ShownOutline::ShownOutline(const TDSearchResultsOutlineView &view)
    : _isAllExpanded(view.numberOfExpandedFiles() == view.results()->rowCount()),
      _sortColumn(view.header()->sortIndicatorSection()), _sortOrder(view.header()->sortIndicatorOrder())
{
    const ResultsTreeModel &model = *view.results();
    for (int row = 0; row < model.rowCount() && !_isAllExpanded; ++row) {
        if (view.isExpanded(model.index(row, 0)))
            _expanded.insert(model.file(row)->path());
    }
    const QModelIndex selected = view.selectedIndex();
    if (!selected.isValid())
        return;
    const QModelIndex file = selected.parent().isValid() ? selected.parent() : selected;
    _selectedFile = model.file(file.row())->path();
    _selectedLine = selected.parent().isValid() ? selected.row() : -1;
}

void ShownOutline::restore(TDSearchResultsOutlineView &view) const
{
    if (_sortColumn >= 0)
        view.header()->setSortIndicator(_sortColumn, _sortOrder);
    const ResultsTreeModel &model = *view.results();
    if (_isAllExpanded)
        view.expandAll();
    for (int row = 0; row < model.rowCount() && !_expanded.isEmpty(); ++row) {
        if (_expanded.contains(model.file(row)->path()))
            view.expandItem(model.index(row, 0));
    }
    _select(view);
}

void ShownOutline::_select(TDSearchResultsOutlineView &view) const
{
    const ResultsTreeModel &model = *view.results();
    for (int row = 0; row < model.rowCount() && !_selectedFile.isEmpty(); ++row) {
        if (model.file(row)->path() != _selectedFile)
            continue;
        const QModelIndex file = model.index(row, 0);
        if (_selectedLine >= 0)
            view.expandItem(file);
        const int line = qMin(_selectedLine, model.rowCount(file) - 1);
        view.selectRow(view.rowOfIndex(file) + 1 + line);
        view.scrollRowToVisible(view.selectedRow());
        return;
    }
}

} // namespace tidemark
