#include "window/results/TDSearchResultsOutlineView.h"

#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsTextFieldCell.h"

#include <QAccessible>
#include <QHeaderView>

#include <algorithm>
#include <utility>

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
    // Lines are selected by their numbers.
    connect(newModel, &QAbstractItemModel::rowsAboutToBeRemoved, this,
            &TDSearchResultsOutlineView::clearSelectedRows);
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
    // Nobody is told: the nodes may be gone.
    _selected = {};
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
    const auto *item = static_cast<const TDFindResultItem *>(file.internalPointer());
    if (!_selected.lines().contains(item))
        return;
    SelectedRows kept = _selected;
    kept.removeLines(item);
    kept.addFile(item);
    if (currentIndex().parent() == file)
        selectionModel()->setCurrentIndex(file, QItemSelectionModel::NoUpdate);
    setSelectedRows(kept);
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
    SelectedRows kept;
    for (const TDFindResultItem *file : _selected.files())
        kept.addFile(file);
    if (currentIndex().parent().isValid())
        selectionModel()->setCurrentIndex(currentIndex().parent(), QItemSelectionModel::NoUpdate);
    setSelectedRows(kept);
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
    if (_selected.isEmpty())
        return {};
    const QModelIndex current = currentIndex().siblingAtColumn(0);
    const bool isSelected =
        current.isValid() &&
        _selected.contains(*static_cast<const TDFindResultItem *>(current.internalPointer()));
    return isSelected ? current : _lowestSelectedIndex();
}

QModelIndex TDSearchResultsOutlineView::_lowestSelectedIndex() const
{
    int row = -1;
    for (const TDFindResultItem *file : _selected.files())
        row = std::max(row, rowOfItem(*file));
    for (auto lines = _selected.lines().cbegin(); lines != _selected.lines().cend(); ++lines)
        row = std::max(row, rowOfItem(*lines.key()) + 1 + lines->rbegin()->second);
    return indexAtRow(row);
}

void TDSearchResultsOutlineView::setSelectedRows(const SelectedRows &rows)
{
    if (rows == _selected)
        return;
    SelectedRows selected = rows;
    SelectedRows deselected = std::exchange(_selected, rows);
    selected.remove(deselected);
    deselected.remove(rows);
    viewport()->update();
    Q_EMIT selectedRowsChanged(selected, deselected);
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent event(this, selectedIndex().data(Qt::AccessibleTextRole));
    QAccessible::updateAccessibility(&event);
}

void TDSearchResultsOutlineView::selectRow(int row, bool extend)
{
    const QModelIndex index = indexAtRow(row);
    if (!index.isValid())
        return;
    if (!extend || _anchorRow < 0)
        _anchorRow = row;
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    SelectedRows selected = extend ? _selected : SelectedRows();
    selected.add(_rowsBetween(row, row));
    setSelectedRows(selected);
}

void TDSearchResultsOutlineView::selectAll()
{
    if (_rows.rowCount() > 0)
        setSelectedRows(_rowsBetween(0, _rows.rowCount() - 1));
}

SelectedRows TDSearchResultsOutlineView::_rowsBetween(int first, int last) const
{
    SelectedRows rows;
    const OutlineRows::Place from = _rows.place(first);
    const OutlineRows::Place to = _rows.place(last);
    for (int row = from.file; row <= to.file; ++row) {
        const TDFindResultItem *file = _results()->file(row).get();
        if (row > from.file || from.line < 0)
            rows.addFile(file);
        rows.addLines(file, row == from.file ? std::max(0, from.line) : 0,
                      row == to.file ? to.line : _rows.shownLines(row) - 1);
    }
    return rows;
}

void TDSearchResultsOutlineView::_selectRange(int row)
{
    const int anchor = _anchorRow >= 0 ? _anchorRow : std::max(0, selectedRow());
    _anchorRow = anchor;
    selectionModel()->setCurrentIndex(indexAtRow(row), QItemSelectionModel::NoUpdate);
    setSelectedRows(_rowsBetween(std::min(anchor, row), std::max(anchor, row)));
}

void TDSearchResultsOutlineView::_toggleSelection(int row)
{
    _anchorRow = row;
    selectionModel()->setCurrentIndex(indexAtRow(row), QItemSelectionModel::NoUpdate);
    const SelectedRows toggled = _rowsBetween(row, row);
    SelectedRows selected = _selected;
    if (selected.contains(*itemAtRow(row)))
        selected.remove(toggled);
    else
        selected.add(toggled);
    setSelectedRows(selected);
}

void TDSearchResultsOutlineView::setSelection(const QRect & /*rect*/, QItemSelectionModel::SelectionFlags)
{
    // Nothing is selected by the base.
}

QRegion TDSearchResultsOutlineView::visualRegionForSelection(const QItemSelection & /*selection*/) const
{
    return {};
}

} // namespace tidemark
