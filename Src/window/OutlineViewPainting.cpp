#include "window/ResultsTreeModel.h"
#include "window/TDSearchResultsOutlineView.h"
#include "window/TDSearchResultsTextFieldCell.h"

#include <QHeaderView>
#include <QPaintEvent>
#include <QPainter>

namespace tidemark {

namespace {

constexpr int HINT_MARGIN = 24;
/// Keeps the numbers away from the folders beside them.
constexpr int NUMBER_MARGIN = 20;

} // namespace

QStyleOptionViewItem TDSearchResultsOutlineView::_option() const
{
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.showDecorationSelected = true;
    return option;
}

void TDSearchResultsOutlineView::paintEvent(QPaintEvent *event)
{
    executeDelayedItemsLayout();
    QPainter painter(viewport());
    if (_rows.rowCount() == 0) {
        _paintHint(painter);
        return;
    }
    painter.setClipRect(event->rect());
    int y = -_top.offset;
    for (int row = _top.row; row < _rows.rowCount() && y < event->rect().bottom() + 1; ++row) {
        const int height = _rowHeight(row);
        if (y + height > event->rect().top())
            _paintRow(painter, row, QRect(0, y, viewport()->width(), height));
        y += height;
    }
}

void TDSearchResultsOutlineView::_paintRow(QPainter &painter, int row, const QRect &rect) const
{
    const QModelIndex index = indexAtRow(row);
    QStyleOptionViewItem option = _option();
    option.rect = rect;
    if (_selected.contains(*static_cast<const TDFindResultItem *>(index.internalPointer()))) {
        option.state |= QStyle::State_Selected;
        const bool isActive = option.state & QStyle::State_Active;
        painter.fillRect(rect, option.palette.brush(isActive ? QPalette::Active : QPalette::Inactive,
                                                    QPalette::Highlight));
    }
    if (!index.parent().isValid()) {
        _paintFileRow(painter, option, index);
        return;
    }
    option.rect = _leafRect(rect);
    _cell->paint(&painter, option, index);
}

void TDSearchResultsOutlineView::_paintFileRow(QPainter &painter, QStyleOptionViewItem option,
                                               const QModelIndex &file) const
{
    const QRect row = option.rect;
    const int indentation = style()->pixelMetric(QStyle::PM_TreeViewIndentation, nullptr, this);
    for (int column = 0; column < ResultsTreeModel::COLUMN_COUNT; ++column) {
        option.rect = QRect(_header->sectionViewportPosition(column), row.top(), _header->sectionSize(column),
                            row.height());
        if (column == ResultsTreeModel::NameColumn)
            option.rect.adjust(indentation, 0, 0, 0);
        if (column == ResultsTreeModel::MatchesColumn)
            option.rect.adjust(0, 0, -NUMBER_MARGIN, 0);
        _cell->paint(&painter, option, file.siblingAtColumn(column));
    }
    QStyleOptionViewItem branch = option;
    branch.rect = QRect(_header->sectionViewportPosition(0), row.top(), indentation, row.height());
    branch.state |= QStyle::State_Item;
    if (model()->hasChildren(file))
        branch.state |= QStyle::State_Children;
    branch.state.setFlag(QStyle::State_Open, isExpanded(file));
    style()->drawPrimitive(QStyle::PE_IndicatorBranch, &branch, &painter, this);
}

void TDSearchResultsOutlineView::_paintHint(QPainter &painter) const
{
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const QRect rect = viewport()->rect().adjusted(HINT_MARGIN, HINT_MARGIN, -HINT_MARGIN, -HINT_MARGIN);
    painter.drawText(rect, Qt::AlignCenter | Qt::TextWordWrap, _hintText);
}

} // namespace tidemark
