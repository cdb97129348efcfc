#include "window/results/OutlinePainter.h"

#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsOutlineView.h"
#include "window/results/TDSearchResultsTextFieldCell.h"

#include <QHeaderView>
#include <QPainter>

namespace tidemark {

namespace {

constexpr int HINT_MARGIN = 24;
/// Keeps the numbers away from the folders beside them.
constexpr int NUMBER_MARGIN = 20;
/// How much of the highlight is left in a selection without the keyboard.
constexpr float MUTED = 0.3F;
constexpr int FOCUS_MARK_ALPHA = 170;
constexpr int NOTE_GAP = 8;
constexpr float SECONDARY_ALPHA = 0.75F;

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

void OutlinePainter::paintRow(int row, const QRect &rect, const QRect &textRect) const
{
    const QModelIndex index = _view.indexAtRow(row);
    QStyleOptionViewItem option = _option;
    option.rect = rect;
    const bool isSelected =
        _view.selectedRows().contains(*static_cast<const TDFindResultItem *>(index.internalPointer()));
    // Without the keyboard a selection is only tinted, and its text is as everywhere.
    if (isSelected && _view.hasFocus()) {
        option.state |= QStyle::State_Selected;
        _painter.fillRect(rect, option.palette.brush(QPalette::Active, QPalette::Highlight));
    } else if (isSelected) {
        _painter.fillRect(rect, mutedHighlight(option.palette));
    }
    if (index.parent().isValid()) {
        option.rect = textRect;
        _cell.paint(&_painter, option, index);
    } else {
        _paintFileRow(option, index);
    }
    if (index.siblingAtColumn(0) == _view.currentIndex().siblingAtColumn(0))
        paintFocusMark(rect, isSelected ? QPalette::HighlightedText : QPalette::Text);
}

void OutlinePainter::_paintFileRow(QStyleOptionViewItem option, const QModelIndex &file) const
{
    const QRect row = option.rect;
    const int indentation = _view.style()->pixelMetric(QStyle::PM_TreeViewIndentation, nullptr, &_view);
    for (int column = 0; column < ResultsTreeModel::COLUMN_COUNT; ++column) {
        option.rect = QRect(_view.header()->sectionViewportPosition(column), row.top(),
                            _view.header()->sectionSize(column), row.height());
        if (column == ResultsTreeModel::NameColumn)
            option.rect.adjust(indentation, 0, 0, 0);
        if (column == ResultsTreeModel::MatchesColumn)
            option.rect.adjust(0, 0, -NUMBER_MARGIN, 0);
        if (column == ResultsTreeModel::NameColumn)
            _paintName(option, file.siblingAtColumn(column));
        else
            _cell.paint(&_painter, option, file.siblingAtColumn(column));
    }
    QStyleOptionViewItem branch = option;
    branch.rect = QRect(_view.header()->sectionViewportPosition(0), row.top(), indentation, row.height());
    branch.state |= QStyle::State_Item;
    if (_view.model()->hasChildren(file))
        branch.state |= QStyle::State_Children;
    branch.state.setFlag(QStyle::State_Open, _view.isExpanded(file));
    _view.style()->drawPrimitive(QStyle::PE_IndicatorBranch, &branch, &_painter, &_view);
}

/// The name gives way to the note behind it.
void OutlinePainter::_paintName(QStyleOptionViewItem option, const QModelIndex &file) const
{
    const QString note = file.data(ResultsTreeModel::NoteRole).toString();
    const QRect whole = option.rect;
    if (!note.isEmpty()) {
        const int room = option.fontMetrics.horizontalAdvance(note) + NOTE_GAP;
        option.rect.setWidth(qMin(_cell.sizeHint(option, file).width(), qMax(0, whole.width() - room)));
    }
    _cell.paint(&_painter, option, file);
    if (note.isEmpty())
        return;
    const bool isSelected = option.state & QStyle::State_Selected;
    QColor color =
        option.palette.color(QPalette::Active, isSelected ? QPalette::HighlightedText : QPalette::Text);
    color.setAlphaF(SECONDARY_ALPHA);
    const QRect rect = whole.adjusted(option.rect.width() + NOTE_GAP, 0, 0, 0);
    _painter.setFont(option.font);
    _painter.setPen(color);
    _painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      option.fontMetrics.elidedText(note, Qt::ElideRight, rect.width()));
}

void OutlinePainter::paintFocusMark(const QRect &rect, QPalette::ColorRole role) const
{
    if (!_view.hasFocus())
        return;
    QColor color = _view.palette().color(QPalette::Active, role);
    color.setAlpha(FOCUS_MARK_ALPHA);
    _painter.setPen(color);
    _painter.drawRect(rect.adjusted(1, 1, -2, -2));
}

void OutlinePainter::paintHint() const
{
    _painter.setPen(_view.palette().color(QPalette::PlaceholderText));
    const QRect rect =
        _view.viewport()->rect().adjusted(HINT_MARGIN, HINT_MARGIN, -HINT_MARGIN, -HINT_MARGIN);
    _painter.drawText(rect, Qt::AlignCenter | Qt::TextWordWrap, _view.hintText());
}

} // namespace tidemark
