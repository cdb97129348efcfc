#include "window/results/OutlinePainter.h"

#include "window/Colors.h"
#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsOutlineView.h"
#include "window/results/TDSearchResultsTextFieldCell.h"

#include <QHeaderView>
#include <QPainter>

#include <algorithm>

namespace tidemark {

namespace {

constexpr int GAP = 6;
constexpr int MARGIN = 8;
/// How much of the highlight a selected row shows, on light and on dark.
constexpr double TINT = 0.25;
constexpr double TINT_ON_DARK = 0.5;
/// How much of the text's colour is in what is set off, from faint to clear.
constexpr double OF_FILE_ROW = 0.04;
constexpr double OF_SELECTION_WITHOUT_FOCUS = 0.12;
constexpr double OF_BADGE = 0.1;
constexpr double OF_LINE = 0.14;
constexpr double BADGE_FONT = 0.85;

/// Text on it stays readable, whatever the desktop highlights with.
QColor tinted(const QPalette &palette)
{
    const QColor text = palette.color(QPalette::Text);
    const QColor base = palette.color(QPalette::Base);
    const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
    for (double share = isDark(palette) ? TINT_ON_DARK : TINT; share > OF_BADGE; share -= OF_BADGE) {
        const QColor tint = mixed(highlight, base, share);
        if (contrastRatio(text, tint) >= 2 * READABLE_CONTRAST)
            return tint;
    }
    return mixed(highlight, base, OF_BADGE);
}

} // namespace

OutlinePainter::OutlinePainter(const TDSearchResultsOutlineView &view,
                               const TDSearchResultsTextFieldCell &cell, QPainter &painter,
                               const QStyleOptionViewItem &option)
    : _view(view), _cell(cell), _painter(painter), _option(option)
{
    // The same in a window that isn't active.
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::Base})
        _option.palette.setColor(role, _view.palette().color(QPalette::Active, role));
}

QColor OutlinePainter::_background(bool isSelected, bool isFile) const
{
    const QColor text = _option.palette.color(QPalette::Text);
    const QColor base = _option.palette.color(QPalette::Base);
    if (isSelected)
        return _view.hasFocus() ? tinted(_option.palette) : mixed(text, base, OF_SELECTION_WITHOUT_FOCUS);
    return isFile ? mixed(text, base, OF_FILE_ROW) : base;
}

void OutlinePainter::paintRow(int row, const QRect &rect, const QRect &textRect) const
{
    const QModelIndex index = _view.indexAtRow(row);
    const bool isFile = !index.parent().isValid();
    const bool isSelected =
        _view.selectedRows().contains(*static_cast<const TDFindResultItem *>(index.internalPointer()));
    QStyleOptionViewItem option = _option;
    option.rect = isFile ? rect : textRect;
    option.state.setFlag(QStyle::State_Selected, isSelected);
    option.palette.setColor(QPalette::Base, _background(isSelected, isFile));
    _painter.fillRect(rect, option.palette.color(QPalette::Base));
    if (isFile && row > 0)
        _painter.fillRect(
            QRect(rect.left(), rect.top(), rect.width(), 1),
            mixed(_option.palette.color(QPalette::Text), _option.palette.color(QPalette::Base), OF_LINE));
    if (index.siblingAtColumn(0) == _view.currentIndex().siblingAtColumn(0))
        paintFocusMark(rect);
    if (isFile)
        _paintFileRow(option, index);
    else
        _cell.paint(&_painter, option, index);
}

void OutlinePainter::paintFocusMark(const QRect &rect) const
{
    if (!_view.hasFocus())
        return;
    QStyleOptionFocusRect mark;
    mark.initFrom(&_view);
    mark.rect = rect;
    mark.state |= QStyle::State_KeyboardFocusChange;
    mark.backgroundColor = _option.palette.color(QPalette::Base);
    _view.style()->drawPrimitive(QStyle::PE_FrameFocusRect, &mark, &_painter, &_view);
    paintFocusFrame(rect);
}

void OutlinePainter::paintFocusFrame(const QRect &rect) const
{
    if (!_view.hasFocus())
        return;
    _painter.setPen(_view.palette().color(QPalette::Active, QPalette::Highlight));
    _painter.setBrush(Qt::NoBrush);
    _painter.drawRect(rect.adjusted(0, 0, -1, -1));
}

// -- A file's row, written from left to right and mirrored for languages that run the other way

QRect OutlinePainter::_visual(const QStyleOptionViewItem &option, const QRect &rect) const
{
    return QStyle::visualRect(option.direction, option.rect, rect);
}

void OutlinePainter::_paintFileRow(const QStyleOptionViewItem &option, const QModelIndex &file) const
{
    _paintTriangle(option, file);
    const int indentation = _view.style()->pixelMetric(QStyle::PM_TreeViewIndentation, nullptr, &_view);
    QRect room = option.rect.adjusted(indentation, 0, -MARGIN, 0);
    const QHeaderView *header = _view.header();
    if (!header->isSectionHidden(ResultsTreeModel::FolderColumn)) {
        const QString text = _view.folderText(*static_cast<const TDFindResultItem *>(file.internalPointer()));
        QRect folder = room;
        folder.setLeft(room.right() - header->sectionSize(ResultsTreeModel::FolderColumn) + MARGIN);
        // What a short one leaves free is for the rest of the row, but for a column that stands in front.
        if (header->isSectionHidden(ResultsTreeModel::EncodingColumn))
            folder.setLeft(std::max(folder.left(),
                                    room.right() - QFontMetrics(option.font).horizontalAdvance(text) - GAP));
        _paintSecondary(option, folder, text, Qt::AlignRight);
        room.setRight(folder.left() - GAP);
    }
    if (!header->isSectionHidden(ResultsTreeModel::EncodingColumn)) {
        QRect encoding = room;
        encoding.setLeft(room.right() - header->sectionSize(ResultsTreeModel::EncodingColumn) + MARGIN);
        _paintSecondary(option, encoding,
                        file.siblingAtColumn(ResultsTreeModel::EncodingColumn).data().toString(),
                        Qt::AlignLeft);
        room.setRight(encoding.left() - GAP);
    }
    room = _paintIcon(option, room, file);
    room = _paintName(option, room, file);
    room = _paintBadge(option, room, file);
    room = _paintNote(option, room, file);
    _paintRemark(option, room, file);
}

void OutlinePainter::_paintTriangle(const QStyleOptionViewItem &option, const QModelIndex &file) const
{
    const int indentation = _view.style()->pixelMetric(QStyle::PM_TreeViewIndentation, nullptr, &_view);
    QStyleOptionViewItem branch = option;
    // Styles keep a picture for each palette. That of the row is a new one each time.
    branch.palette = _view.palette();
    branch.rect = _visual(option, QRect(option.rect.topLeft(), QSize(indentation, option.rect.height())));
    branch.state.setFlag(QStyle::State_Selected, false);
    branch.state |= QStyle::State_Item;
    if (_view.model()->hasChildren(file))
        branch.state |= QStyle::State_Children;
    branch.state.setFlag(QStyle::State_Open, _view.isExpanded(file));
    _view.style()->drawPrimitive(QStyle::PE_IndicatorBranch, &branch, &_painter, &_view);
}

QRect OutlinePainter::_paintIcon(const QStyleOptionViewItem &option, QRect room,
                                 const QModelIndex &file) const
{
    const int size = _view.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &_view);
    const QRect place(room.left(), room.top() + (room.height() - size) / 2, size, size);
    file.data(Qt::DecorationRole).value<QIcon>().paint(&_painter, _visual(option, place));
    room.setLeft(place.right() + 1 + GAP);
    return room;
}

QRect OutlinePainter::_paintName(const QStyleOptionViewItem &option, QRect room,
                                 const QModelIndex &file) const
{
    QFont font = option.font;
    font.setBold(true);
    const QFontMetrics metrics(font);
    // What is behind a long name is seen too.
    const int note =
        QFontMetrics(option.font).horizontalAdvance(file.data(ResultsTreeModel::NoteRole).toString());
    const int most = std::max(room.width() / 2, room.width() - 12 * metrics.averageCharWidth() - note);
    const QString name = metrics.elidedText(file.data().toString().simplified(), Qt::ElideMiddle, most);
    QRect place = room;
    place.setWidth(metrics.horizontalAdvance(name));
    _painter.setFont(font);
    _painter.setPen(option.palette.color(QPalette::Text));
    _painter.drawText(_visual(option, place), Qt::AlignCenter | Qt::TextSingleLine, name);
    room.setLeft(place.right() + 1 + GAP);
    return room;
}

QRect OutlinePainter::_paintBadge(const QStyleOptionViewItem &option, QRect room,
                                  const QModelIndex &file) const
{
    const QString count = file.siblingAtColumn(ResultsTreeModel::MatchesColumn).data().toString();
    if (count.isEmpty())
        return room;
    QFont font = option.font;
    font.setPointSizeF(font.pointSizeF() * BADGE_FONT);
    const QFontMetrics metrics(font);
    const int height = metrics.height() + 2;
    const int width = std::max(metrics.horizontalAdvance(count) + height * 3 / 4, height);
    const QRect place(room.left(), room.top() + (room.height() - height) / 2, width, height);
    const QColor text = option.palette.color(QPalette::Text);
    const QColor background = mixed(text, option.palette.color(QPalette::Base), OF_BADGE);
    _painter.save();
    _painter.setRenderHint(QPainter::Antialiasing);
    _painter.setPen(Qt::NoPen);
    _painter.setBrush(background);
    _painter.drawRoundedRect(_visual(option, place), height / 2.0, height / 2.0);
    _painter.restore();
    _painter.setFont(font);
    _painter.setPen(secondaryColor(text, background));
    _painter.drawText(_visual(option, place), Qt::AlignCenter, count);
    room.setLeft(place.right() + 1 + GAP);
    return room;
}

/// How much of the file is replaced, say.
QRect OutlinePainter::_paintNote(const QStyleOptionViewItem &option, QRect room,
                                 const QModelIndex &file) const
{
    const QFontMetrics metrics(option.font);
    const QString note = metrics.elidedText(file.data(ResultsTreeModel::NoteRole).toString(), Qt::ElideRight,
                                            std::max(0, room.width()));
    if (note.isEmpty())
        return room;
    QRect place = room;
    place.setWidth(metrics.horizontalAdvance(note));
    _painter.setFont(option.font);
    _painter.setPen(
        secondaryColor(option.palette.color(QPalette::Text), option.palette.color(QPalette::Base)));
    _painter.drawText(_visual(option, place), Qt::AlignCenter | Qt::TextSingleLine, note);
    room.setLeft(place.right() + 1 + GAP);
    return room;
}

void OutlinePainter::_paintRemark(const QStyleOptionViewItem &option, QRect room,
                                  const QModelIndex &file) const
{
    const auto &item = *static_cast<const TDFindResultItem *>(file.internalPointer());
    if (item.remark().isEmpty() || room.width() <= 0)
        return;
    _painter.setFont(option.font);
    _painter.setPen(errorColor(option.palette));
    _painter.drawText(
        _visual(option, room),
        int(QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter)) | Qt::TextSingleLine,
        QFontMetrics(option.font).elidedText(item.remark().simplified(), Qt::ElideRight, room.width()));
}

/// What stands behind or beside the file's name.
void OutlinePainter::_paintSecondary(const QStyleOptionViewItem &option, QRect room, const QString &text,
                                     Qt::Alignment side) const
{
    _painter.setFont(option.font);
    _painter.setPen(
        secondaryColor(option.palette.color(QPalette::Text), option.palette.color(QPalette::Base)));
    _painter.drawText(_visual(option, room),
                      int(QStyle::visualAlignment(option.direction, side | Qt::AlignVCenter)) |
                          Qt::TextSingleLine,
                      QFontMetrics(option.font).elidedText(text, Qt::ElideMiddle, room.width()));
}

} // namespace tidemark
