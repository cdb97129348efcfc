#include "session/ScrolledRows.h"

#include <algorithm>

namespace tidemark {

void ScrolledRows::setTop(Top top)
{
    _top = std::clamp(top, Top(), lastTop());
}

void ScrolledRows::rowsChanged()
{
    _knownLastTop.reset();
    _top.row = std::clamp(_top.row, 0, std::max(0, _rows.rowCount() - 1));
}

ScrolledRows::Top ScrolledRows::moved(Top top, int pixels) const
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

ScrolledRows::Top ScrolledRows::lastTop() const
{
    if (!_knownLastTop) {
        const int last = _rows.rowCount() - 1;
        _knownLastTop = last < 0 ? Top() : moved({last, _rowHeight(last)}, -_viewportHeight());
    }
    return *_knownLastTop;
}

std::optional<ScrolledRows::Top> ScrolledRows::topToShow(int row, int upper, int lower) const
{
    const Top wanted = {row, upper};
    const Top highest = moved({row, lower}, -_viewportHeight());
    if (wanted < _top || lower - upper > _viewportHeight())
        return wanted;
    return highest > _top ? std::optional(highest) : std::nullopt;
}

int ScrolledRows::rowAt(int y) const
{
    int top = -_top.offset;
    for (int row = _top.row; row < _rows.rowCount() && top < _viewportHeight(); ++row) {
        top += _rowHeight(row);
        if (y < top)
            return row;
    }
    return -1;
}

std::optional<int> ScrolledRows::yOfRow(int row) const
{
    if (row < _top.row)
        return {};
    int y = -_top.offset;
    for (int above = _top.row; above < row; ++above) {
        y += _rowHeight(above);
        if (y >= _viewportHeight())
            return {};
    }
    return y;
}

int ScrolledRows::rowBelow(int row, int pixels) const
{
    const int reached = moved({row, 0}, pixels).row;
    if (reached == row)
        return std::clamp(row + (pixels > 0 ? 1 : -1), 0, _rows.rowCount() - 1);
    return reached;
}

int ScrolledRows::scrollValue(Top top, int unit) const
{
    if (_rows.rowCount() == 0)
        return 0;
    return top.row * unit + top.offset * unit / std::max(1, _rowHeight(top.row));
}

ScrolledRows::Top ScrolledRows::topAtScrollValue(int value, int unit) const
{
    const int row = value / unit;
    return {row, value % unit * _rowHeight(row) / unit};
}

} // namespace tidemark
