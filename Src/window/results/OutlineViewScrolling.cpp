#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsOutlineView.h"
#include "window/results/TDSearchResultsTextFieldCell.h"

#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>

namespace tidemark {

namespace {

constexpr int FILE_ROW_PADDING = 2;
constexpr int MOST_KNOWN_HEIGHTS = 200000;
constexpr int WHEEL_STEP = 120;

} // namespace

/// The height of a file's row, and what one row counts on the scroll bar.
int TDSearchResultsOutlineView::_unit() const
{
    const int iconHeight = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    return std::max({TDSearchResultsTextFieldCell::MINIMUM_ROW_HEIGHT,
                     fontMetrics().height() + FILE_ROW_PADDING, iconHeight + FILE_ROW_PADDING});
}

int TDSearchResultsOutlineView::_rowHeight(int row) const
{
    const QModelIndex index = indexAtRow(row);
    if (!index.parent().isValid())
        return _unit();
    const auto *item = static_cast<const TDFindResultItem *>(index.internalPointer());
    const auto known = _heights.constFind(item);
    if (known != _heights.constEnd())
        return *known;
    QStyleOptionViewItem option = _option();
    option.rect = _leafRect(QRect(0, 0, viewport()->width(), 0));
    if (_heights.size() >= MOST_KNOWN_HEIGHTS)
        _heights.clear();
    return *_heights.insert(item, _cell->sizeHint(option, index).height());
}

QRect TDSearchResultsOutlineView::_leafRect(const QRect &row) const
{
    const int indentation = style()->pixelMetric(QStyle::PM_TreeViewIndentation, nullptr, this);
    return row.adjusted(2 * indentation, 0, -4, 0);
}

TDSearchResultsOutlineView::Top TDSearchResultsOutlineView::_moved(Top top, int pixels) const
{
    if (_rows.rowCount() == 0)
        return {};
    top.offset += pixels;
    while (top.offset < 0 && top.row > 0)
        top.offset += _rowHeight(--top.row);
    if (top.offset < 0)
        return {};
    for (int height = _rowHeight(top.row); top.offset >= height; height = _rowHeight(top.row)) {
        if (top.row + 1 >= _rows.rowCount())
            return {top.row, height - 1};
        top.offset -= height;
        ++top.row;
    }
    return top;
}

TDSearchResultsOutlineView::Top TDSearchResultsOutlineView::_lastTop() const
{
    if (!_knownLastTop) {
        const int last = _rows.rowCount() - 1;
        _knownLastTop = last < 0 ? Top() : _moved({last, _rowHeight(last)}, -viewport()->height());
    }
    return *_knownLastTop;
}

void TDSearchResultsOutlineView::_setTop(Top top)
{
    _top = std::clamp(top, Top(), _lastTop());
    _setsScrollBar = true;
    verticalScrollBar()->setValue(_scrollValue(_top));
    _setsScrollBar = false;
    viewport()->update();
}

int TDSearchResultsOutlineView::_scrollValue(Top top) const
{
    if (_rows.rowCount() == 0)
        return 0;
    return top.row * _unit() + top.offset * _unit() / std::max(1, _rowHeight(top.row));
}

void TDSearchResultsOutlineView::_updateScrollBar()
{
    if (model() == nullptr)
        return;
    _knownLastTop.reset();
    _top.row = std::clamp(_top.row, 0, std::max(0, _rows.rowCount() - 1));
    _setsScrollBar = true;
    verticalScrollBar()->setRange(0, _scrollValue(_lastTop()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(_unit());
    _setsScrollBar = false;
    _setTop(_top);
}

void TDSearchResultsOutlineView::scrollContentsBy(int /*dx*/, int /*dy*/)
{
    if (_setsScrollBar || model() == nullptr)
        return;
    const int value = verticalScrollBar()->value();
    if (value == verticalScrollBar()->maximum()) {
        _top = _lastTop();
    } else {
        _top.row = value / _unit();
        _top.offset = value % _unit() * _rowHeight(_top.row) / _unit();
    }
    viewport()->update();
}

int TDSearchResultsOutlineView::verticalOffset() const
{
    return verticalScrollBar()->value();
}

void TDSearchResultsOutlineView::wheelEvent(QWheelEvent *event)
{
    int pixels = -event->pixelDelta().y();
    if (event->pixelDelta().isNull()) {
        _wheelRemainder += -event->angleDelta().y() * QApplication::wheelScrollLines() * _unit();
        pixels = _wheelRemainder / WHEEL_STEP;
        _wheelRemainder %= WHEEL_STEP;
    }
    const Top before = _top;
    _setTop(_moved(_top, pixels));
    event->setAccepted(_top != before);
}

void TDSearchResultsOutlineView::updateGeometries()
{
    const int height = _header->sizeHint().height();
    setViewportMargins(0, height, 0, 0);
    const QRect content = viewport()->geometry();
    _header->setGeometry(content.left(), content.top() - height, content.width(), height);
    _updateScrollBar();
    QAbstractItemView::updateGeometries();
}

void TDSearchResultsOutlineView::resizeEvent(QResizeEvent *event)
{
    if (event->size().width() != event->oldSize().width())
        _heights.clear();
    QAbstractItemView::resizeEvent(event);
}

void TDSearchResultsOutlineView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        _heights.clear();
        _cell->forgetAll();
    }
    QAbstractItemView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        scheduleDelayedItemsLayout();
}

// -- From rows to places and back

/// The row at the height in the viewport; beyond the last row none, above the viewport the first one shown.
int TDSearchResultsOutlineView::_rowAt(int y) const
{
    int top = -_top.offset;
    for (int row = _top.row; row < _rows.rowCount() && top < viewport()->height(); ++row) {
        top += _rowHeight(row);
        if (y < top)
            return row;
    }
    return -1;
}

/// Nothing for rows that don't reach into the viewport.
std::optional<int> TDSearchResultsOutlineView::_yOfRow(int row) const
{
    if (row < _top.row)
        return {};
    int y = -_top.offset;
    for (int above = _top.row; above < row; ++above) {
        y += _rowHeight(above);
        if (y >= viewport()->height())
            return {};
    }
    return y;
}

/// The row that is so many pixels below the upper edge of this one, or above it, within the existing rows.
int TDSearchResultsOutlineView::_rowBelow(int row, int pixels) const
{
    const int reached = _moved({row, 0}, pixels).row;
    if (reached == row)
        return std::clamp(row + (pixels > 0 ? 1 : -1), 0, _rows.rowCount() - 1);
    return reached;
}

QRect TDSearchResultsOutlineView::visualRect(const QModelIndex &index) const
{
    const int row = rowOfIndex(index);
    if (row < 0)
        return {};
    // Rows that aren't shown are somewhere above or below; where exactly would cost measuring all between.
    const int y = _yOfRow(row).value_or(row < _top.row ? -_rowHeight(row) : viewport()->height());
    if (index.parent().isValid())
        return {0, y, viewport()->width(), _rowHeight(row)};
    return {_header->sectionViewportPosition(index.column()), y, _header->sectionSize(index.column()),
            _rowHeight(row)};
}

QModelIndex TDSearchResultsOutlineView::indexAt(const QPoint &point) const
{
    const QModelIndex index = indexAtRow(_rowAt(point.y()));
    if (!index.isValid() || index.parent().isValid())
        return index;
    return index.siblingAtColumn(_header->logicalIndexAt(point.x()));
}

void TDSearchResultsOutlineView::_showPart(int row, int top, int bottom)
{
    executeDelayedItemsLayout();
    const Top wanted = {row, top};
    const Top highest = _moved({row, bottom}, -viewport()->height());
    if (wanted < _top || bottom - top > viewport()->height())
        _setTop(wanted);
    else if (highest > _top)
        _setTop(highest);
}

void TDSearchResultsOutlineView::scrollRowToVisible(int row)
{
    if (row >= 0 && row < _rows.rowCount())
        _showPart(row, 0, _rowHeight(row));
}

void TDSearchResultsOutlineView::scrollToText(int row, qsizetype position, qsizetype length)
{
    const QModelIndex index = indexAtRow(row);
    if (!index.parent().isValid())
        return;
    QStyleOptionViewItem option = _option();
    option.rect = _leafRect(QRect(0, 0, viewport()->width(), 0));
    const QRect rect = _cell->rectOfText(option, *_results()->item(index), position, length);
    if (_rowHeight(row) <= viewport()->height())
        scrollRowToVisible(row);
    else if (rect.isValid())
        _showPart(row, rect.top(), rect.bottom() + 1);
}

void TDSearchResultsOutlineView::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    const int row = rowOfIndex(index);
    if (row < 0)
        return;
    executeDelayedItemsLayout();
    const int height = viewport()->height();
    if (hint == PositionAtTop)
        _setTop({row, 0});
    else if (hint == PositionAtBottom)
        _setTop(_moved({row, _rowHeight(row)}, -height));
    else if (hint == PositionAtCenter)
        _setTop(_moved({row, _rowHeight(row) / 2}, -height / 2));
    else
        scrollRowToVisible(row);
}

} // namespace tidemark
