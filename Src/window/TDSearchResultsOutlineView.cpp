#include "window/TDSearchResultsOutlineView.h"

#include "window/ResultsTreeModel.h"
#include "window/TDSearchResultsTextFieldCell.h"

#include <QHeaderView>

#include <algorithm>

namespace tidemark {

namespace {

constexpr int NAME_WIDTH = 320;
constexpr int MATCHES_WIDTH = 90;

} // namespace

TDSearchResultsOutlineView::TDSearchResultsOutlineView(QWidget *parent)
    : QAbstractItemView(parent), _header(new QHeaderView(Qt::Horizontal, this)),
      _cell(new TDSearchResultsTextFieldCell(this))
{
    setItemDelegate(_cell);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setTextElideMode(Qt::ElideMiddle);
    // Selecting scrolls where a command says so.
    setAutoScroll(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _header->setSectionsClickable(true);
    _header->setSortIndicatorShown(true);
    _header->setSortIndicatorClearable(true);
    _header->setSortIndicator(-1, Qt::AscendingOrder);
    _header->setStretchLastSection(true);
    _header->setHighlightSections(false);
    connect(_header, &QHeaderView::sectionResized, viewport(), qOverload<>(&QWidget::update));
    connect(_header, &QHeaderView::sortIndicatorChanged, this, [this](int column, Qt::SortOrder order) {
        if (model() != nullptr)
            model()->sort(column, order);
    });
}

TDSearchResultsOutlineView::~TDSearchResultsOutlineView() = default;

void TDSearchResultsOutlineView::setModel(QAbstractItemModel *newModel)
{
    Q_ASSERT(newModel == nullptr || qobject_cast<ResultsTreeModel *>(newModel) != nullptr);
    if (model() != nullptr)
        disconnect(model(), nullptr, this, nullptr);
    QAbstractItemView::setModel(newModel);
    _header->setModel(newModel);
    if (newModel == nullptr)
        return;
    _header->resizeSection(ResultsTreeModel::NameColumn, NAME_WIDTH);
    _header->resizeSection(ResultsTreeModel::MatchesColumn, MATCHES_WIDTH);
    connect(newModel, &QAbstractItemModel::rowsRemoved, this, &TDSearchResultsOutlineView::_rowsWereRemoved);
    connect(newModel, &QAbstractItemModel::layoutChanged, this, &TDSearchResultsOutlineView::_rebuildRows);
    connect(&_results()->results(), &FindResults::cleared, this, [this] {
        const QSignalBlocker blocker(_header);
        _header->setSortIndicator(-1, Qt::AscendingOrder);
    });
    _rebuildRows();
}

const ResultsTreeModel *TDSearchResultsOutlineView::_results() const
{
    return static_cast<const ResultsTreeModel *>(model());
}

void TDSearchResultsOutlineView::setHintText(const QString &text)
{
    _hintText = text;
    viewport()->update();
}

// -- Rows

void TDSearchResultsOutlineView::reset()
{
    QAbstractItemView::reset();
    _cell->forgetAll();
    _heights.clear();
    if (model() != nullptr)
        _rebuildRows();
}

void TDSearchResultsOutlineView::_rebuildRows()
{
    _rows.clear();
    const int count = model()->rowCount();
    _rows.reserve(count);
    QSet<const TDFindResultItem *> stillExpanded;
    for (int row = 0; row < count; ++row) {
        const TDFindResultItem *file = _results()->file(row).get();
        const bool expanded = !_expanded.isEmpty() && _expanded.contains(file);
        if (expanded)
            stillExpanded.insert(file);
        _rows.appendFile(expanded ? int(file->children().size()) : 0);
    }
    _expanded = stillExpanded;
    _anchorRow = -1;
    _rowsChanged();
}

void TDSearchResultsOutlineView::_rowsChanged()
{
    _knownLastTop.reset();
    _top.row = std::clamp(_top.row, 0, std::max(0, _rows.rowCount() - 1));
    scheduleDelayedItemsLayout();
}

void TDSearchResultsOutlineView::rowsInserted(const QModelIndex &parent, int start, int end)
{
    QAbstractItemView::rowsInserted(parent, start, end);
    if (start != _rows.fileCount()) {
        _rebuildRows();
        return;
    }
    for (int row = start; row <= end; ++row)
        _rows.appendFile(0);
    _rowsChanged();
}

void TDSearchResultsOutlineView::_rowsWereRemoved(const QModelIndex &parent)
{
    // Addresses of nodes that are gone may come back as those of others.
    _cell->forgetAll();
    _heights.clear();
    if (parent.isValid() && isExpanded(parent)) {
        _rows.setShownLines(parent.row(), model()->rowCount(parent));
        _rowsChanged();
    } else if (!parent.isValid()) {
        _rebuildRows();
    }
}

void TDSearchResultsOutlineView::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                                             const QList<int> & /*roles*/)
{
    const auto *item = static_cast<const TDFindResultItem *>(topLeft.internalPointer());
    const bool isOneRow = topLeft.row() == bottomRight.row();
    if (isOneRow && item->isMatchLine()) {
        _cell->forget(*item);
        _heights.remove(item);
    } else if (!isOneRow) {
        _cell->forgetAll();
        _heights.clear();
    }
    _rowsChanged();
}

QModelIndex TDSearchResultsOutlineView::indexAtRow(int row) const
{
    if (row < 0 || row >= _rows.rowCount())
        return {};
    const OutlineRows::Place place = _rows.place(row);
    const QModelIndex file = model()->index(place.file, 0);
    return place.line < 0 ? file : model()->index(place.line, 0, file);
}

int TDSearchResultsOutlineView::rowOfIndex(const QModelIndex &index) const
{
    if (!index.isValid() || index.model() != model())
        return -1;
    const QModelIndex file = index.parent();
    if (!file.isValid())
        return _rows.rowOfFile(index.row());
    return index.row() < _rows.shownLines(file.row()) ? _rows.rowOfFile(file.row()) + 1 + index.row() : -1;
}

int TDSearchResultsOutlineView::rowOfItem(const TDFindResultItem &item) const
{
    return rowOfIndex(_results()->indexOf(&item));
}

std::shared_ptr<TDFindResultItem> TDSearchResultsOutlineView::itemAtRow(int row) const
{
    return model() != nullptr ? _results()->item(indexAtRow(row)) : nullptr;
}

bool TDSearchResultsOutlineView::isIndexHidden(const QModelIndex &index) const
{
    return rowOfIndex(index) < 0;
}

// -- Expanding and collapsing

bool TDSearchResultsOutlineView::isExpanded(const QModelIndex &file) const
{
    return file.isValid() &&
           _expanded.contains(static_cast<const TDFindResultItem *>(file.internalPointer()));
}

void TDSearchResultsOutlineView::_setShownLines(int file, int shownLines)
{
    const bool hasRows = _rows.rowCount() > 0;
    const OutlineRows::Place top = hasRows ? _rows.place(_top.row) : OutlineRows::Place();
    _rows.setShownLines(file, shownLines);
    _anchorRow = -1;
    if (top.file > file)
        _top.row = _rows.rowOfFile(top.file) + 1 + top.line;
    else if (top.file == file && top.line >= shownLines)
        _top = {_rows.rowOfFile(file), 0};
    _rowsChanged();
}

void TDSearchResultsOutlineView::expandItem(const QModelIndex &file)
{
    if (!file.isValid() || file.parent().isValid() || isExpanded(file))
        return;
    _expanded.insert(static_cast<const TDFindResultItem *>(file.internalPointer()));
    _setShownLines(file.row(), model()->rowCount(file));
    Q_EMIT itemDidExpand(file);
}

void TDSearchResultsOutlineView::collapseItem(const QModelIndex &file)
{
    if (!isExpanded(file))
        return;
    Q_EMIT itemWillCollapse(file);
    _deselectLines(file);
    _expanded.remove(static_cast<const TDFindResultItem *>(file.internalPointer()));
    _setShownLines(file.row(), 0);
    Q_EMIT itemDidCollapse(file);
}

/// Rows that vanish can't stay selected; the file's own takes their place.
void TDSearchResultsOutlineView::_deselectLines(const QModelIndex &file)
{
    const QItemSelection selection = selectionModel()->selection();
    const bool hasSelectedLine = std::any_of(selection.begin(), selection.end(),
                                             [&file](const auto &range) { return range.parent() == file; });
    if (!hasSelectedLine)
        return;
    QItemSelection kept;
    std::copy_if(selection.begin(), selection.end(), std::back_inserter(kept),
                 [&file](const auto &range) { return range.parent() != file; });
    if (!selectionModel()->isSelected(file))
        kept << QItemSelectionRange(file, file.siblingAtColumn(ResultsTreeModel::COLUMN_COUNT - 1));
    if (currentIndex().parent() == file)
        selectionModel()->setCurrentIndex(file, QItemSelectionModel::NoUpdate);
    selectionModel()->select(kept, QItemSelectionModel::ClearAndSelect);
}

void TDSearchResultsOutlineView::expandAll()
{
    const OutlineRows::Place top = _rows.rowCount() > 0 ? _rows.place(_top.row) : OutlineRows::Place();
    for (int row = 0; row < _rows.fileCount(); ++row)
        _expanded.insert(_results()->file(row).get());
    _rebuildRows();
    if (top.file >= 0)
        _top.row = _rows.rowOfFile(top.file) + 1 + top.line;
}

void TDSearchResultsOutlineView::collapseAll()
{
    QItemSelection kept;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        if (!range.parent().isValid())
            kept << range;
    }
    if (currentIndex().parent().isValid())
        selectionModel()->setCurrentIndex(currentIndex().parent(), QItemSelectionModel::NoUpdate);
    if (kept.size() != selectionModel()->selection().size())
        selectionModel()->select(kept, QItemSelectionModel::ClearAndSelect);
    const int topFile = _rows.rowCount() > 0 ? _rows.place(_top.row).file : 0;
    _expanded.clear();
    _rebuildRows();
    _top = {topFile, 0};
}

void TDSearchResultsOutlineView::_toggleExpanded(const QModelIndex &file)
{
    if (isExpanded(file))
        collapseItem(file);
    else
        expandItem(file);
}

// -- Selection

int TDSearchResultsOutlineView::selectedRow() const
{
    return rowOfIndex(selectedIndex());
}

QModelIndex TDSearchResultsOutlineView::selectedIndex() const
{
    if (model() == nullptr || !selectionModel()->hasSelection())
        return {};
    const QModelIndex current = currentIndex().siblingAtColumn(0);
    if (current.isValid() && selectionModel()->isSelected(current))
        return current;
    const QItemSelectionRange &last = selectionModel()->selection().last();
    return model()->index(last.bottom(), 0, last.parent());
}

void TDSearchResultsOutlineView::selectRow(int row, bool extend)
{
    const QModelIndex index = indexAtRow(row);
    if (!index.isValid())
        return;
    if (!extend || _anchorRow < 0)
        _anchorRow = row;
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    selectionModel()->select(_selectionOfRows(row, row),
                             extend ? QItemSelectionModel::Select : QItemSelectionModel::ClearAndSelect);
}

void TDSearchResultsOutlineView::selectAll()
{
    if (_rows.rowCount() > 0)
        selectionModel()->select(_selectionOfRows(0, _rows.rowCount() - 1),
                                 QItemSelectionModel::ClearAndSelect);
}

QItemSelection TDSearchResultsOutlineView::_selectionOfRows(int first, int last) const
{
    QItemSelection selection;
    const int lastColumn = ResultsTreeModel::COLUMN_COUNT - 1;
    const OutlineRows::Place from = _rows.place(first);
    const OutlineRows::Place to = _rows.place(last);
    const int firstFile = from.line < 0 ? from.file : from.file + 1;
    if (firstFile <= to.file)
        selection << QItemSelectionRange(model()->index(firstFile, 0), model()->index(to.file, lastColumn));
    for (int row = from.file; row <= to.file; ++row) {
        const int firstLine = row == from.file ? std::max(0, from.line) : 0;
        const int lastLine = row == to.file ? to.line : _rows.shownLines(row) - 1;
        if (firstLine > lastLine)
            continue;
        const QModelIndex file = model()->index(row, 0);
        selection << QItemSelectionRange(model()->index(firstLine, 0, file),
                                         model()->index(lastLine, lastColumn, file));
    }
    return selection;
}

void TDSearchResultsOutlineView::_selectRange(int row)
{
    const int anchor = _anchorRow >= 0 ? _anchorRow : std::max(0, selectedRow());
    _anchorRow = anchor;
    selectionModel()->setCurrentIndex(indexAtRow(row), QItemSelectionModel::NoUpdate);
    selectionModel()->select(_selectionOfRows(std::min(anchor, row), std::max(anchor, row)),
                             QItemSelectionModel::ClearAndSelect);
}

void TDSearchResultsOutlineView::_toggleSelection(int row)
{
    _anchorRow = row;
    selectionModel()->setCurrentIndex(indexAtRow(row), QItemSelectionModel::NoUpdate);
    selectionModel()->select(_selectionOfRows(row, row), QItemSelectionModel::Toggle);
}

void TDSearchResultsOutlineView::setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command)
{
    const int first = _rowAt(std::max(0, rect.top()));
    const int last = _rowAt(std::max(0, rect.bottom()));
    if (first >= 0 && last >= 0)
        selectionModel()->select(_selectionOfRows(first, last), command);
}

QRegion TDSearchResultsOutlineView::visualRegionForSelection(const QItemSelection &selection) const
{
    return selection.isEmpty() ? QRegion() : QRegion(viewport()->rect());
}

} // namespace tidemark
