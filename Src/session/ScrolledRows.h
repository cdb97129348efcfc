#pragma once

#include "session/OutlineRows.h"

#include <compare>
#include <functional>
#include <optional>

namespace tidemark {

/// Which rows of an outline are in sight: the first one shown, and how much of it is above the upper edge.
/// Rows are of differing height and measured only when they are in sight or next to it, so that a million of
/// them scroll as fast as ten; where a row is that is far away is therefore not known. Lengths are in pixels.
class ScrolledRows
{
public:
    struct Top
    {
        int row = 0;
        int offset = 0; ///< of the row, above the upper edge
        friend auto operator<=>(const Top &, const Top &) = default;
    };

    /// `rows` must outlive the object; `rowHeight` measures a row, `viewportHeight` is what there is room
    /// for.
    ScrolledRows(const OutlineRows &rows, std::function<int(int row)> rowHeight,
                 std::function<int()> viewportHeight)
        : _rows(rows), _rowHeight(std::move(rowHeight)), _viewportHeight(std::move(viewportHeight))
    {}

    const Top &top() const { return _top; }
    /// The nearest one that leaves no room below the last row.
    void setTop(Top top);
    /// Measured when it is next asked for.
    void setTopRow(int row, int offset = 0) { _top = {row, offset}; }
    /// Rows came, went, or changed their height.
    void rowsChanged();

    /// So many pixels further down, or up, within the existing rows.
    Top moved(Top top, int pixels) const;
    /// With the last row at the lower edge.
    Top lastTop() const;
    /// Scrolled as little as needed to show the part of a row, or its upper end; nothing when it is in sight.
    std::optional<Top> topToShow(int row, int upper, int lower) const;

    /// The row at the height; -1 beyond the last row, and the first one shown above the upper edge.
    int rowAt(int y) const;
    /// Nothing for rows that don't reach into sight.
    std::optional<int> yOfRow(int row) const;
    /// The row that is so many pixels below the upper edge of this one, or above it; another one, if there
    /// is.
    int rowBelow(int row, int pixels) const;

    // A scroll bar counts every row as `unit`, however high it is.
    int scrollValue(Top top, int unit) const;
    Top topAtScrollValue(int value, int unit) const;

private:
    const OutlineRows &_rows;
    std::function<int(int row)> _rowHeight;
    std::function<int()> _viewportHeight;
    Top _top;
    mutable std::optional<Top> _knownLastTop;
};

} // namespace tidemark
