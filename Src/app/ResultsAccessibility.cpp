#include "app/ResultsAccessibility.h"

#include "window/results/TDSearchResultsOutlineView.h"

#include <QAccessibleWidget>

namespace tidemark {

namespace {

/// Rows are no objects of their own: there can be a million of them.
class AccessibleResults : public QAccessibleWidget
{
public:
    explicit AccessibleResults(TDSearchResultsOutlineView *view)
        : QAccessibleWidget(view, QAccessible::Tree), _view(view)
    {}

    QString text(QAccessible::Text kind) const override
    {
        if (kind != QAccessible::Value)
            return QAccessibleWidget::text(kind);
        return _view->selectedIndex().data(Qt::AccessibleTextRole).toString();
    }

private:
    const TDSearchResultsOutlineView *_view;
};

QAccessibleInterface *accessibleResults(const QString &, QObject *object)
{
    auto *view = qobject_cast<TDSearchResultsOutlineView *>(object);
    return view == nullptr ? nullptr : new AccessibleResults(view);
}

} // namespace

void installResultsAccessibility()
{
    // A factory stands in the list once, however often it is installed.
    QAccessible::installFactory(accessibleResults);
}

} // namespace tidemark
