#pragma once

#include <QPalette>
#include <QRect>
#include <QStyleOptionViewItem>

class QPainter;

namespace tidemark {

class TDSearchResultsOutlineView;
class TDSearchResultsTextFieldCell;

/// Paints what the results' outline shows: rows with their triangles, where the keyboard is, and the hint of
/// an empty one. Places are in pixels of the viewport.
class OutlinePainter
{
public:
    /// All must outlive the object; `option` is what every row begins with.
    OutlinePainter(const TDSearchResultsOutlineView &view, const TDSearchResultsTextFieldCell &cell,
                   QPainter &painter, QStyleOptionViewItem option)
        : _view(view), _cell(cell), _painter(painter), _option(std::move(option))
    {}

    /// `textRect` is where the text of a match line goes.
    void paintRow(int row, const QRect &rect, const QRect &textRect) const;
    /// Nothing while the keyboard is elsewhere.
    void paintFocusMark(const QRect &rect, QPalette::ColorRole role) const;
    void paintHint() const;

private:
    void _paintFileRow(QStyleOptionViewItem option, const QModelIndex &file) const;
    void _paintName(QStyleOptionViewItem option, const QModelIndex &file) const;

    const TDSearchResultsOutlineView &_view;
    const TDSearchResultsTextFieldCell &_cell;
    QPainter &_painter;
    const QStyleOptionViewItem _option;
};

} // namespace tidemark
