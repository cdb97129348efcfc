#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>

namespace tidemark {

namespace {

bool isTableKey(int key)
{
    switch (key) {
    case Qt::Key_S:
    case Qt::Key_X:
    case Qt::Key_R:
    case Qt::Key_L:
    case Qt::Key_Delete:
    case Qt::Key_Down:
    case Qt::Key_Up:
        return true;
    default:
        return false;
    }
}

/// Alt gives mnemonics, and the other system key is the window manager's.
bool hasForeignModifier(Qt::KeyboardModifiers modifiers)
{
    return modifiers & (Qt::AltModifier | Qt::MetaModifier);
}

} // namespace

// -- Keys

bool TDSearchResultsOutlineView::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto *keyEvent = static_cast<QKeyEvent *>(event);
        // The view's own keys come before shortcuts of the window that happen to be the same.
        if (isTableKey(keyEvent->key()) && !hasForeignModifier(keyEvent->modifiers())) {
            event->accept();
            return true;
        }
    }
    return QAbstractItemView::event(event);
}

void TDSearchResultsOutlineView::keyPressEvent(QKeyEvent *event)
{
    if (_performTableKey(*event) || _performCursorKey(*event))
        event->accept();
    else
        QAbstractItemView::keyPressEvent(event);
}

bool TDSearchResultsOutlineView::_performTableKey(const QKeyEvent &event)
{
    if (!isTableKey(event.key()) || hasForeignModifier(event.modifiers()))
        return false;
    if (_delegate == nullptr || !_delegate->hasSearchResults())
        return true;
    if (event.key() == Qt::Key_Delete)
        _delegate->removeSelected();
    else if (event.key() == Qt::Key_Down || event.key() == Qt::Key_Up)
        _performMove(event.key() == Qt::Key_Down, event.modifiers());
    else if (event.modifiers() & Qt::ControlModifier)
        _performCommand(event.key());
    return true;
}

void TDSearchResultsOutlineView::_performCommand(int key)
{
    if (key == Qt::Key_S)
        _delegate->replaceSelection();
    else if (key == Qt::Key_X)
        _delegate->replaceAndFind();
    else if (key == Qt::Key_R)
        _delegate->replace();
    else if (key == Qt::Key_L)
        _delegate->replaceAll();
}

void TDSearchResultsOutlineView::_performMove(bool isDown, Qt::KeyboardModifiers modifiers)
{
    if (modifiers & Qt::ControlModifier)
        isDown ? _delegate->moveToFirstMatchInNextFile() : _delegate->moveToFirstMatchInFile();
    else if (modifiers & Qt::ShiftModifier)
        isDown ? _delegate->moveToNextMatchByExtendingSelection()
               : _delegate->moveToPreviousMatchByExtendingSelection();
    else
        isDown ? _delegate->moveToNextMatch() : _delegate->moveToPreviousMatch();
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
    const int last = _rows.rowCount() - 1;
    if (last < 0)
        return {};
    const int row = std::max(0, selectedRow());
    const int page = std::max(1, viewport()->height() - _unit());
    switch (action) {
    case MoveHome:
        return indexAtRow(0);
    case MoveEnd:
        return indexAtRow(last);
    case MovePageUp:
        return indexAtRow(_rowBelow(row, -page));
    case MovePageDown:
        return indexAtRow(_rowBelow(row, page));
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
    const int count = _rows.fileCount();
    const int selected = selectedRow();
    const int start = selected >= 0 ? _rows.place(selected).file + 1 : 0;
    for (int step = 0; step < count; ++step) {
        const int file = (start + step) % count;
        if (!_results()->file(file)->filenameMatchLineSortKey().startsWith(search, Qt::CaseInsensitive))
            continue;
        selectRow(_rows.rowOfFile(file));
        scrollRowToVisible(_rows.rowOfFile(file));
        return;
    }
}

// -- The keyboard comes and goes

void TDSearchResultsOutlineView::focusInEvent(QFocusEvent *event)
{
    // The base would make a row current that nobody chose.
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void TDSearchResultsOutlineView::focusOutEvent(QFocusEvent *event)
{
    QAbstractItemView::focusOutEvent(event);
    viewport()->update();
}

// -- Mouse

bool TDSearchResultsOutlineView::_isOnDisclosure(int row, int x) const
{
    const int indentation = style()->pixelMetric(QStyle::PM_TreeViewIndentation, nullptr, this);
    return x < indentation && !indexAtRow(row).parent().isValid();
}

void TDSearchResultsOutlineView::mousePressEvent(QMouseEvent *event)
{
    const QPoint position = event->position().toPoint();
    const bool wantsMenu = event->button() == Qt::RightButton || (event->modifiers() & Qt::MetaModifier);
    if (wantsMenu && _rightMouseDownHelper(position, event->globalPosition().toPoint())) {
        event->accept();
        return;
    }
    const int row = _rowAt(position.y());
    _dragsSelection = false;
    if (event->button() != Qt::LeftButton || row < 0)
        return;
    if (_isOnDisclosure(row, position.x())) {
        _toggleExpanded(indexAtRow(row));
        return;
    }
    if (event->modifiers() & Qt::ShiftModifier)
        _selectRange(row);
    else if (event->modifiers() & Qt::ControlModifier)
        _toggleSelection(row);
    else
        selectRow(row);
    _dragsSelection = !(event->modifiers() & Qt::ControlModifier);
}

void TDSearchResultsOutlineView::mouseMoveEvent(QMouseEvent *event)
{
    if (!_dragsSelection || !(event->buttons() & Qt::LeftButton) || _rows.rowCount() == 0)
        return;
    const int y = event->position().toPoint().y();
    if (y < 0)
        _setTop(_moved(_top, -_unit()));
    else if (y >= viewport()->height())
        _setTop(_moved(_top, _unit()));
    const int row = _rowAt(std::clamp(y, 0, viewport()->height() - 1));
    const int reached = row >= 0 ? row : _rows.rowCount() - 1;
    if (reached != selectedRow())
        _selectRange(reached);
}

void TDSearchResultsOutlineView::mouseReleaseEvent(QMouseEvent * /*event*/)
{
    _dragsSelection = false;
}

void TDSearchResultsOutlineView::mouseDoubleClickEvent(QMouseEvent *event)
{
    // Two quick clicks on a triangle are two clicks.
    mousePressEvent(event);
}

bool TDSearchResultsOutlineView::_rightMouseDownHelper(QPoint position, QPoint globalPosition)
{
    const int row = _rowAt(position.y());
    const int column = _header->logicalIndexAt(position.x());
    if (row < 0 || column < 0)
        return false;
    if (!_selected.contains(*itemAtRow(row)))
        selectRow(row);
    if (_delegate != nullptr)
        _delegate->rightMouseDownInColumn(column, row, globalPosition);
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
    const QPoint position(_header->sectionViewportPosition(0) + rect.height(), rect.center().y());
    if (!rect.isValid() || !_rightMouseDownHelper(position, viewport()->mapToGlobal(position)))
        QAbstractItemView::contextMenuEvent(event);
}

} // namespace tidemark
