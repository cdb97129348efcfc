#include "window/results/ResultsAnnouncements.h"

#include "window/results/TDSearchResultsOutlineView.h"

#include <QAccessible>

namespace tidemark {

ResultsAnnouncements::ResultsAnnouncements(TDSearchResultsOutlineView *view) : QObject(view), _view(*view)
{
    connect(view, &OutlineView::itemDidExpand, this, &ResultsAnnouncements::_announceExpansion);
    connect(view, &OutlineView::itemDidCollapse, this, &ResultsAnnouncements::_announceExpansion);
    connect(view, &TDSearchResultsOutlineView::selectedRowsChanged, this,
            &ResultsAnnouncements::announceSelectedRow);
}

void ResultsAnnouncements::announceSelectedRow()
{
    const int row = QAccessible::isActive() ? _view.selectedRow() : -1;
    if (row < 0)
        return;
    QAccessibleValueChangeEvent value(&_view, _view.spokenRow(row));
    QAccessible::updateAccessibility(&value);
    QAccessibleEvent focus(&_view, QAccessible::Focus);
    focus.setChild(row);
    if (_view.hasFocus())
        QAccessible::updateAccessibility(&focus);
}

void ResultsAnnouncements::_announceExpansion(const QModelIndex &file)
{
    if (!QAccessible::isActive())
        return;
    QAccessible::State changed;
    changed.expanded = true;
    QAccessibleStateChangeEvent event(&_view, changed);
    event.setChild(_view.rowOfIndex(file));
    QAccessible::updateAccessibility(&event);
}

} // namespace tidemark
