#include "window/locations/TDSearchLocationsTableView.h"

#include "window/EmptyState.h"
#include "window/locations/PathControlWithPathBinding.h"
#include "window/locations/TDTableViewDragDropArrayController.h"

#include <QDrag>
#include <QDragMoveEvent>
#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>

namespace tidemark {

namespace {

constexpr int ROWS_WITHOUT_SCROLLING = 5;

/// Files stay where they are, whatever the file manager proposes: a move would delete them there.
void refuseToMoveFiles(QDropEvent *event)
{
    if (event->isAccepted() && !event->mimeData()->hasFormat(TD_DRAGGED_TYPE_TABLE_VIEW_ITEM))
        event->setDropAction(Qt::CopyAction);
}

} // namespace

TDSearchLocationsTableView::TDSearchLocationsTableView(QWidget *parent)
    : QTableView(parent), _emptyState(new EmptyState(Symbol::Folder, viewport()))
{
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setShowGrid(false);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setTextElideMode(Qt::ElideMiddle);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    horizontalHeader()->hide();
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    _fitRowHeights();
    _setUpDragging();
}

void TDSearchLocationsTableView::_setUpDragging()
{
    setDragEnabled(true);
    setAcceptDrops(true);
    setDragDropMode(DragDrop);
    setDragDropOverwriteMode(false);
    setDropIndicatorShown(true);
}

void TDSearchLocationsTableView::_fitRowHeights()
{
    const int iconHeight = style()->pixelMetric(QStyle::PM_ListViewIconSize, nullptr, this);
    const int height = qMax(fontMetrics().height(), qMin(iconHeight, fontMetrics().height() + 6)) + 6;
    verticalHeader()->setMinimumSectionSize(height);
    verticalHeader()->setDefaultSectionSize(height);
}

void TDSearchLocationsTableView::setModel(QAbstractItemModel *model)
{
    QTableView::setModel(model);
    using Model = TDTableViewDragDropArrayController;
    setItemDelegateForColumn(Model::PathColumn,
                             new PathControlWithPathBinding(Model::PathRole, Model::ExistsRole, this));
    horizontalHeader()->setSectionResizeMode(Model::PathColumn, QHeaderView::Stretch);
    horizontalHeader()->setSectionResizeMode(Model::SubfoldersColumn, QHeaderView::ResizeToContents);
    connect(model, &QAbstractItemModel::modelReset, this, &TDSearchLocationsTableView::_showHint);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &TDSearchLocationsTableView::_showHint);
    _showHint();
}

void TDSearchLocationsTableView::setHintText(const QString &text)
{
    _emptyState->setSentence(text);
    _showHint();
}

QString TDSearchLocationsTableView::hintText() const
{
    return _emptyState->sentence();
}

void TDSearchLocationsTableView::_showHint()
{
    _emptyState->setVisible(model() == nullptr || model()->rowCount() == 0);
}

QList<int> TDSearchLocationsTableView::selectedRowNumbers() const
{
    QList<int> rows;
    const QModelIndexList selected = selectionModel()->selectedRows();
    for (const QModelIndex &index : selected)
        rows << index.row();
    std::sort(rows.begin(), rows.end());
    return rows;
}

QSize TDSearchLocationsTableView::sizeHint() const
{
    return {400, ROWS_WITHOUT_SCROLLING * verticalHeader()->defaultSectionSize() + 2 * frameWidth()};
}

QSize TDSearchLocationsTableView::minimumSizeHint() const
{
    // The divider may be dragged so far up that next to nothing of the list is left.
    return {200, 2 * frameWidth()};
}

void TDSearchLocationsTableView::startDrag(Qt::DropActions)
{
    // The model moves the rows when they are dropped; the view must not take them away as well.
    auto *drag = new QDrag(this);
    drag->setMimeData(model()->mimeData(selectionModel()->selectedRows()));
    drag->exec(Qt::MoveAction, Qt::MoveAction);
}

void TDSearchLocationsTableView::dragEnterEvent(QDragEnterEvent *event)
{
    QTableView::dragEnterEvent(event);
    refuseToMoveFiles(event);
}

void TDSearchLocationsTableView::dragMoveEvent(QDragMoveEvent *event)
{
    QTableView::dragMoveEvent(event);
    refuseToMoveFiles(event);
}

void TDSearchLocationsTableView::dropEvent(QDropEvent *event)
{
    QTableView::dropEvent(event);
    refuseToMoveFiles(event);
}

void TDSearchLocationsTableView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)
        Q_EMIT removeRequested();
    else if (event->key() == Qt::Key_Space)
        _toggleSubfolders();
    else
        QTableView::keyPressEvent(event);
}

void TDSearchLocationsTableView::_toggleSubfolders()
{
    const QList<int> rows = selectedRowNumbers();
    for (const int row : rows) {
        const QModelIndex tick = model()->index(row, TDTableViewDragDropArrayController::SubfoldersColumn);
        const bool isTicked = tick.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        model()->setData(tick, isTicked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }
}

void TDSearchLocationsTableView::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        _fitRowHeights();
}

} // namespace tidemark
