#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsOutlineView.h"
#include "window/results/TDSearchResultsTextFieldCell.h"

#include <QHeaderView>
#include <QPaintEvent>
#include <QPainter>

namespace tidemark {

namespace {

constexpr int HINT_MARGIN = 24;
/// Keeps the numbers away from the folders beside them.
constexpr int NUMBER_MARGIN = 20;
/// How much of the highlight is left in a selection without the keyboard.
constexpr float MUTED = 0.3F;
constexpr int FOCUS_MARK_ALPHA = 170;

QColor mutedHighlight(const QPalette &palette)
{
    const QColor strong = palette.color(QPalette::Active, QPalette::Highlight);
    const QColor base = palette.color(QPalette::Active, QPalette::Base);
    const auto mixed = [](float highlight, float background) {
        return MUTED * highlight + (1 - MUTED) * background;
    };
    return QColor::fromRgbF(mixed(strong.redF(), base.redF()), mixed(strong.greenF(), base.greenF()),
                            mixed(strong.blueF(), base.blueF()));
}

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
        _paintFocusMark(painter, viewport()->rect(), QPalette::Highlight);
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
    if (!currentIndex().isValid())
        _paintFocusMark(painter, viewport()->rect(), QPalette::Highlight);
}

void TDSearchResultsOutlineView::_paintFocusMark(QPainter &painter, const QRect &rect,
                                                 QPalette::ColorRole role) const
{
    if (!hasFocus())
        return;
    QColor color = palette().color(QPalette::Active, role);
    color.setAlpha(FOCUS_MARK_ALPHA);
    painter.setPen(color);
    painter.drawRect(rect.adjusted(1, 1, -2, -2));
}

void TDSearchResultsOutlineView::_paintRow(QPainter &painter, int row, const QRect &rect) const
{
    const QModelIndex index = indexAtRow(row);
    QStyleOptionViewItem option = _option();
    option.rect = rect;
    const bool isSelected =
        _selected.contains(*static_cast<const TDFindResultItem *>(index.internalPointer()));
    // Without the keyboard a selection is only tinted, and its text is as everywhere.
    if (isSelected && hasFocus()) {
        option.state |= QStyle::State_Selected;
        painter.fillRect(rect, option.palette.brush(QPalette::Active, QPalette::Highlight));
    } else if (isSelected) {
        painter.fillRect(rect, mutedHighlight(option.palette));
    }
    if (index.parent().isValid()) {
        option.rect = _leafRect(rect);
        _cell->paint(&painter, option, index);
    } else {
        _paintFileRow(painter, option, index);
    }
    if (index.siblingAtColumn(0) == currentIndex().siblingAtColumn(0))
        _paintFocusMark(painter, rect, isSelected ? QPalette::HighlightedText : QPalette::Text);
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
