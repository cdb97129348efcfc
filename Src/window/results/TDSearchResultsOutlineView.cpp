#include "window/results/TDSearchResultsOutlineView.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "matching/TDFindResultItem.h"
#include "window/EmptyState.h"
#include "window/results/FolderTexts.h"
#include "window/results/LastSelectedPath.h"
#include "window/results/OutlinePainter.h"
#include "window/results/ResultsAnnouncements.h"
#include "window/results/ResultsColumns.h"
#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsTextFieldCell.h"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace tidemark {

TDSearchResultsOutlineView::TDSearchResultsOutlineView(QWidget *parent)
    : OutlineView(parent), _announcements(new ResultsAnnouncements(this)),
      _emptyState(new EmptyState(Symbol::Search, viewport()))
{
    _emptyState->hide();
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    connect(&UserDefaults::standard(), &UserDefaults::valueChanged, this, [this](const QString &key) {
        if (key == TD_USER_DEFAULTS_NAME_SHOW_ENCODINGS)
            showColumnsThatFit(*header(), viewport()->width());
    });
}

void TDSearchResultsOutlineView::setModel(QAbstractItemModel *newModel)
{
    OutlineView::setModel(newModel);
    // Lines are selected by their numbers.
    if (newModel != nullptr)
        connect(newModel, &QAbstractItemModel::rowsAboutToBeRemoved, this,
                &TDSearchResultsOutlineView::clearSelectedRows);
    if (newModel != nullptr)
        connect(newModel, &QAbstractItemModel::rowsInserted, this, &TDSearchResultsOutlineView::_showHint);
    showColumnsThatFit(*header(), viewport()->width());
}

void TDSearchResultsOutlineView::reset()
{
    // Nobody is told: the nodes may be gone.
    _selected = {};
    OutlineView::reset();
    _showHint();
}

void TDSearchResultsOutlineView::setHintText(const QString &text)
{
    _emptyState->setSentence(text);
    _showHint();
}

QString TDSearchResultsOutlineView::hintText() const
{
    return _emptyState->sentence();
}

void TDSearchResultsOutlineView::_showHint()
{
    _emptyState->setVisible(!hintText().isEmpty() && model() != nullptr && model()->rowCount() == 0);
}

QString TDSearchResultsOutlineView::folderText(const TDFindResultItem &file) const
{
    return folderInLocations(file.displayPath(), _locationFolders);
}

void TDSearchResultsOutlineView::resizeEvent(QResizeEvent *event)
{
    OutlineView::resizeEvent(event);
    showColumnsThatFit(*header(), viewport()->width());
}

void TDSearchResultsOutlineView::changeEvent(QEvent *event)
{
    OutlineView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        showColumnsThatFit(*header(), viewport()->width());
}

void TDSearchResultsOutlineView::paintEvent(QPaintEvent *event)
{
    executeDelayedItemsLayout();
    QPainter painter(viewport());
    const OutlinePainter outline(*this, cell(), painter, rowOption());
    painter.setClipRect(event->rect());
    int y = -scrolled().top().offset;
    for (int row = scrolled().top().row; row < rows().rowCount() && y < event->rect().bottom() + 1; ++row) {
        const QRect rect(0, y, viewport()->width(), rowHeight(row));
        if (rect.bottom() >= event->rect().top())
            outline.paintRow(row, rect, leafRect(rect));
        y += rect.height();
    }
    if (!currentIndex().isValid())
        outline.paintFocusFrame(viewport()->rect());
}

// -- Selection

void TDSearchResultsOutlineView::noteRowsMoved()
{
    _anchorRow = -1;
}

/// Rows that vanish can't stay selected; the file's own takes their place.
void TDSearchResultsOutlineView::linesAboutToHide(const QModelIndex &file)
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

void TDSearchResultsOutlineView::allLinesAboutToHide()
{
    SelectedRows kept;
    for (const TDFindResultItem *file : _selected.files())
        kept.addFile(file);
    if (currentIndex().parent().isValid())
        selectionModel()->setCurrentIndex(currentIndex().parent(), QItemSelectionModel::NoUpdate);
    setSelectedRows(kept);
}

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
    if (isSelected)
        return current;
    const std::optional<ResultPath> last = lastSelectedPath(_selected, *results());
    if (!last)
        return {};
    const QModelIndex file = results()->index(last->file, 0);
    return last->isLine() ? results()->index(last->line, 0, file) : file;
}

void TDSearchResultsOutlineView::setSelectedRows(const SelectedRows &rows)
{
    if (rows == _selected)
        return;
    _selected = rows;
    // Long lines are whole while they are selected.
    rowHeightsChanged();
    viewport()->update();
    Q_EMIT selectedRowsChanged();
}

// -- What is said

QString TDSearchResultsOutlineView::spokenRow(int row) const
{
    const QModelIndex index = indexAtRow(row);
    QString spoken = index.data(Qt::AccessibleTextRole).toString();
    if (!index.isValid() || index.parent().isValid())
        return spoken;
    return formatted(localizedString(isExpanded(index) ? "%@, expanded" : "%@, collapsed"), {spoken});
}

/// Another match of the same row is highlighted, as a rule.
void TDSearchResultsOutlineView::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                                             const QList<int> &roles)
{
    OutlineView::dataChanged(topLeft, bottomRight, roles);
    if (QAccessible::isActive() && topLeft.row() == bottomRight.row() && topLeft == selectedIndex())
        _announcements->announceSelectedRow();
}

// -- Selecting

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
    if (rows().rowCount() > 0)
        setSelectedRows(_rowsBetween(0, rows().rowCount() - 1));
}

SelectedRows TDSearchResultsOutlineView::_rowsBetween(int first, int last) const
{
    SelectedRows between;
    const OutlineRows::Place from = rows().place(first);
    const OutlineRows::Place to = rows().place(last);
    for (int row = from.file; row <= to.file; ++row) {
        const TDFindResultItem *file = results()->file(row).get();
        if (row > from.file || from.line < 0)
            between.addFile(file);
        between.addLines(file, row == from.file ? std::max(0, from.line) : 0,
                         row == to.file ? to.line : rows().shownLines(row) - 1);
    }
    return between;
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

// -- Keys

bool TDSearchResultsOutlineView::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // The view's own keys come before shortcuts of the window that happen to be the same.
        if (OutlineKeys::takes(*static_cast<QKeyEvent *>(event))) {
            event->accept();
            return true;
        }
    }
    return OutlineView::event(event);
}

void TDSearchResultsOutlineView::keyPressEvent(QKeyEvent *event)
{
    if (OutlineKeys::takes(*event))
        _keys.trigger(*event);
    else if (!_performCursorKey(*event))
        return OutlineView::keyPressEvent(event);
    event->accept();
}

bool TDSearchResultsOutlineView::_performCursorKey(const QKeyEvent &event)
{
    const QModelIndex selected = selectedIndex();
    const QModelIndex file = selected.parent();
    if (event.key() == Qt::Key_Right && selected.isValid() && !file.isValid()) {
        expandItem(selected);
        return true;
    }
    if (event.key() == Qt::Key_Left && selected.isValid()) {
        if (file.isValid())
            selectRow(rowOfIndex(file));
        else
            collapseItem(selected);
        scrollRowToVisible(selectedRow());
        return true;
    }
    const int current = rowOfIndex(currentIndex().siblingAtColumn(0));
    if ((event.key() == Qt::Key_Space || event.key() == Qt::Key_Select) && current >= 0) {
        if (event.modifiers() & Qt::ControlModifier)
            _toggleSelection(current);
        else
            selectRow(current, true);
        return true;
    }
    const QList<std::pair<int, CursorAction>> actions = {{Qt::Key_Home, MoveHome},
                                                         {Qt::Key_End, MoveEnd},
                                                         {Qt::Key_PageUp, MovePageUp},
                                                         {Qt::Key_PageDown, MovePageDown}};
    for (const auto &[key, action] : actions) {
        if (event.key() != key)
            continue;
        const int row = rowOfIndex(moveCursor(action, event.modifiers()));
        if (event.modifiers() & Qt::ShiftModifier && row >= 0)
            _selectRange(row);
        else
            selectRow(row);
        scrollRowToVisible(row);
        return true;
    }
    return false;
}

QModelIndex TDSearchResultsOutlineView::moveCursor(CursorAction action, Qt::KeyboardModifiers /*modifiers*/)
{
    const int last = rows().rowCount() - 1;
    if (last < 0)
        return {};
    const int row = std::max(0, selectedRow());
    const int page = std::max(1, viewport()->height() - unit());
    switch (action) {
    case MoveHome:
        return indexAtRow(0);
    case MoveEnd:
        return indexAtRow(last);
    case MovePageUp:
        return indexAtRow(scrolled().rowBelow(row, -page));
    case MovePageDown:
        return indexAtRow(scrolled().rowBelow(row, page));
    case MoveUp:
    case MovePrevious:
    case MoveLeft:
        return indexAtRow(std::max(0, row - 1));
    default:
        return indexAtRow(std::min(last, row + 1));
    }
}

/// Looks through the files' names only, from the one behind the selected one on.
void TDSearchResultsOutlineView::keyboardSearch(const QString &search)
{
    const int count = rows().fileCount();
    const int selected = selectedRow();
    const int start = selected >= 0 ? rows().place(selected).file + 1 : 0;
    for (int step = 0; step < count; ++step) {
        const int file = (start + step) % count;
        if (!results()->file(file)->filenameMatchLineSortKey().startsWith(search, Qt::CaseInsensitive))
            continue;
        selectRow(rows().rowOfFile(file));
        scrollRowToVisible(rows().rowOfFile(file));
        return;
    }
}

// -- The keyboard comes and goes

void TDSearchResultsOutlineView::focusInEvent(QFocusEvent *event)
{
    // The base would make a row current that nobody chose.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void TDSearchResultsOutlineView::focusOutEvent(QFocusEvent *event)
{
    OutlineView::focusOutEvent(event);
    viewport()->update();
}

// -- Mouse

bool TDSearchResultsOutlineView::_isOnDisclosure(int row, int x) const
{
    const int indentation = style()->pixelMetric(QStyle::PM_TreeViewIndentation, nullptr, this);
    const int fromEdge = isRightToLeft() ? viewport()->width() - 1 - x : x;
    return fromEdge < indentation && !indexAtRow(row).parent().isValid();
}

QRect TDSearchResultsOutlineView::readAsRect(int row) const
{
    const std::optional<int> y = scrolled().yOfRow(row);
    const auto item = itemAtRow(row);
    if (!y || !item)
        return {};
    QStyleOptionViewItem option = rowOption();
    option.rect = leafRect(QRect(0, *y, viewport()->width(), rowHeight(row)));
    return cell().readAsRect(option, *item);
}

void TDSearchResultsOutlineView::mousePressEvent(QMouseEvent *event)
{
    const QPoint position = event->position().toPoint();
    const bool wantsMenu = event->button() == Qt::RightButton || (event->modifiers() & Qt::MetaModifier);
    if (wantsMenu && _rightMouseDownHelper(position, event->globalPosition().toPoint())) {
        event->accept();
        return;
    }
    const int row = scrolled().rowAt(position.y());
    _dragsSelection = false;
    _pressedSelected.reset();
    if (event->button() != Qt::LeftButton || row < 0)
        return;
    if (_isOnDisclosure(row, position.x())) {
        toggleExpanded(indexAtRow(row));
        return;
    }
    if (readAsRect(row).contains(position)) {
        selectRow(row);
        Q_EMIT readAsRequested();
        return;
    }
    if (event->modifiers() & Qt::ShiftModifier)
        _selectRange(row);
    else if (event->modifiers() & Qt::ControlModifier)
        _toggleSelection(row);
    else if (_selected.contains(*itemAtRow(row)))
        _pressedSelected = position;
    else
        selectRow(row);
    _dragsSelection = !_pressedSelected && !(event->modifiers() & Qt::ControlModifier);
}

void TDSearchResultsOutlineView::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton) || rows().rowCount() == 0)
        return;
    const QPoint position = event->position().toPoint();
    if (_pressedSelected &&
        (position - *_pressedSelected).manhattanLength() >= QApplication::startDragDistance()) {
        _pressedSelected.reset();
        Q_EMIT dragRequested();
    }
    if (!_dragsSelection)
        return;
    const int y = position.y();
    if (y < 0)
        scrollBy(-unit());
    else if (y >= viewport()->height())
        scrollBy(unit());
    const int row = scrolled().rowAt(std::clamp(y, 0, viewport()->height() - 1));
    const int reached = row >= 0 ? row : rows().rowCount() - 1;
    if (reached != selectedRow())
        _selectRange(reached);
}

void TDSearchResultsOutlineView::mouseReleaseEvent(QMouseEvent * /*event*/)
{
    _dragsSelection = false;
    // It wasn't dragged, so it was meant alone.
    if (_pressedSelected)
        selectRow(scrolled().rowAt(_pressedSelected->y()));
    _pressedSelected.reset();
}

void TDSearchResultsOutlineView::mouseDoubleClickEvent(QMouseEvent *event)
{
    const QPoint position = event->position().toPoint();
    const int row = scrolled().rowAt(position.y());
    const bool opens = event->button() == Qt::LeftButton && event->modifiers() == Qt::NoModifier &&
                       row >= 0 && !_isOnDisclosure(row, position.x());
    // Two quick clicks on a triangle are two clicks.
    mousePressEvent(event);
    if (opens)
        Q_EMIT rowDoubleClicked();
}

bool TDSearchResultsOutlineView::_rightMouseDownHelper(QPoint position, QPoint globalPosition)
{
    const int row = scrolled().rowAt(position.y());
    if (row < 0 || header()->logicalIndexAt(position.x()) < 0)
        return false;
    if (!_selected.contains(*itemAtRow(row)))
        selectRow(row);
    Q_EMIT menuRequested(globalPosition);
    return true;
}

void TDSearchResultsOutlineView::contextMenuEvent(QContextMenuEvent *event)
{
    // Pressing the mouse has shown the menu by now.
    if (event->reason() == QContextMenuEvent::Mouse) {
        event->accept();
        return;
    }
    const QRect rect = visualRect(selectedIndex());
    const QPoint position(header()->sectionViewportPosition(0) + rect.height(), rect.center().y());
    if (!rect.isValid() || !_rightMouseDownHelper(position, viewport()->mapToGlobal(position)))
        OutlineView::contextMenuEvent(event);
}

} // namespace tidemark
