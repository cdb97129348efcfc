#pragma once

#include <QRect>
#include <QStyleOptionViewItem>

class QPainter;

namespace tidemark {

class TDSearchResultsOutlineView;
class TDSearchResultsTextFieldCell;

/// Paints what the results' outline shows: rows with their triangles, and where the keyboard is. Places are
/// in pixels of the viewport.
class OutlinePainter
{
public:
    /// All must outlive the object; `option` is what every row begins with.
    OutlinePainter(const TDSearchResultsOutlineView &view, const TDSearchResultsTextFieldCell &cell,
                   QPainter &painter, const QStyleOptionViewItem &option);

    /// `textRect` is where a match line goes.
    void paintRow(int row, const QRect &rect, const QRect &textRect) const;
    /// Nothing while the keyboard is elsewhere. The frame alone doesn't tint what is in it.
    void paintFocusMark(const QRect &rect) const;
    void paintFocusFrame(const QRect &rect) const;

private:
    QColor _background(bool isSelected, bool isFile) const;
    void _paintFileRow(const QStyleOptionViewItem &option, const QModelIndex &file) const;
    void _paintTriangle(const QStyleOptionViewItem &option, const QModelIndex &file) const;
    /// From the left edge of the room on; gives what is left of it.
    QRect _paintIcon(const QStyleOptionViewItem &option, QRect room, const QModelIndex &file) const;
    QRect _paintName(const QStyleOptionViewItem &option, QRect room, const QModelIndex &file) const;
    QRect _paintBadge(const QStyleOptionViewItem &option, QRect room, const QModelIndex &file) const;
    QRect _paintNote(const QStyleOptionViewItem &option, QRect room, const QModelIndex &file) const;
    void _paintRemark(const QStyleOptionViewItem &option, QRect room, const QModelIndex &file) const;
    void _paintSecondary(const QStyleOptionViewItem &option, QRect room, const QString &text,
                         Qt::Alignment side) const;
    QRect _visual(const QStyleOptionViewItem &option, const QRect &rect) const;

    const TDSearchResultsOutlineView &_view;
    const TDSearchResultsTextFieldCell &_cell;
    QPainter &_painter;
    QStyleOptionViewItem _option;
};

} // namespace tidemark
