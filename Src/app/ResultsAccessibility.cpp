#include "app/ResultsAccessibility.h"

#include "window/context/ContextView.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

namespace tidemark {

namespace {

QAccessibleInterface *viewInterface(TDSearchResultsOutlineView *view)
{
    return QAccessible::queryAccessibleInterface(view);
}

/// The row that has a number now, whatever stands in it.
class AccessibleRow : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    AccessibleRow(TDSearchResultsOutlineView *view, int row) : _view(view), _row(row) {}

    int row() const { return _row; }

    bool isValid() const override { return _view != nullptr && _row < _view->numberOfRows(); }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return isValid() ? _view->window()->windowHandle() : nullptr; }
    QAccessibleInterface *parent() const override
    {
        return _view != nullptr ? viewInterface(_view) : nullptr;
    }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::TreeItem; }

    QString text(QAccessible::Text kind) const override
    {
        if (!isValid())
            return {};
        if (kind == QAccessible::Name)
            return _view->spokenRow(_row);
        return kind == QAccessible::Description ? _index().data(Qt::AccessibleDescriptionRole).toString()
                                                : QString();
    }
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override
    {
        if (!isValid())
            return {};
        const QRect row = _view->visualRect(_index());
        const QRect whole(0, row.top(), _view->viewport()->width(), row.height());
        return {_view->viewport()->mapToGlobal(whole.topLeft()), whole.size()};
    }
    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override
    {
        return _isFile() ? QStringList{pressAction(), toggleAction()} : QStringList{pressAction()};
    }
    void doAction(const QString &name) override
    {
        if (isValid() && name == toggleAction())
            _view->toggleExpanded(_index());
        else if (isValid() && name == pressAction())
            _view->selectRow(_row);
    }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    QModelIndex _index() const { return _view->indexAtRow(_row); }
    bool _isFile() const { return isValid() && !_index().parent().isValid(); }

    QPointer<TDSearchResultsOutlineView> _view;
    int _row;
};

QAccessible::State AccessibleRow::state() const
{
    QAccessible::State state;
    state.invalid = !isValid();
    if (state.invalid)
        return state;
    const QModelIndex index = _index();
    const bool isCurrent = _view->currentIndex().siblingAtColumn(0) == index;
    const QRect row = _view->visualRect(index);
    state.selectable = true;
    state.multiSelectable = true;
    state.focusable = true;
    state.selected = _view->selectedRows().contains(*_view->itemAtRow(_row));
    state.active = isCurrent;
    state.focused = isCurrent && _view->hasFocus();
    state.offscreen = !row.intersects(_view->viewport()->rect());
    state.expandable = _isFile();
    state.expanded = _isFile() && _view->isExpanded(index);
    state.collapsed = _isFile() && !_view->isExpanded(index);
    return state;
}

/// Rows are made as they are asked for: there can be a million of them. Its value is the selected one.
class AccessibleResults : public QAccessibleWidget
{
public:
    explicit AccessibleResults(TDSearchResultsOutlineView *view)
        : QAccessibleWidget(view, QAccessible::Tree), _view(view)
    {}
    ~AccessibleResults() override
    {
        for (const QAccessible::Id row : std::as_const(_rows))
            QAccessible::deleteAccessibleInterface(row);
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind != QAccessible::Value)
            return QAccessibleWidget::text(kind);
        return _view->spokenRow(_view->selectedRow());
    }
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.multiSelectable = true;
        return state;
    }
    int childCount() const override { return _view->numberOfRows(); }
    QAccessibleInterface *child(int row) const override
    {
        if (row < 0 || row >= _view->numberOfRows())
            return nullptr;
        const auto known = _rows.constFind(row);
        if (known != _rows.cend())
            return QAccessible::accessibleInterface(*known);
        auto *made = new AccessibleRow(_view, row);
        _rows.insert(row, QAccessible::registerAccessibleInterface(made));
        return made;
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        const auto *row = dynamic_cast<const AccessibleRow *>(child);
        return row != nullptr ? row->row() : -1;
    }
    QAccessibleInterface *childAt(int x, int y) const override
    {
        const QPoint point = _view->viewport()->mapFromGlobal(QPoint(x, y));
        return _view->viewport()->rect().contains(point) ? child(_view->rowOfIndex(_view->indexAt(point)))
                                                         : nullptr;
    }
    QAccessibleInterface *focusChild() const override
    {
        return _view->hasFocus() ? child(_view->rowOfIndex(_view->currentIndex().siblingAtColumn(0)))
                                 : nullptr;
    }

private:
    TDSearchResultsOutlineView *_view;
    mutable QHash<int, QAccessible::Id> _rows;
};

/// The line with the caret is spoken of.
class AccessibleContext : public QAccessibleWidget
{
public:
    explicit AccessibleContext(ContextView *view)
        : QAccessibleWidget(view, QAccessible::StaticText), _view(view)
    {}

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? _view->spokenText() : QAccessibleWidget::text(kind);
    }

private:
    const ContextView *_view;
};

QAccessibleInterface *accessibleResults(const QString &, QObject *object)
{
    if (auto *view = qobject_cast<TDSearchResultsOutlineView *>(object))
        return new AccessibleResults(view);
    auto *context = qobject_cast<ContextView *>(object);
    return context == nullptr ? nullptr : new AccessibleContext(context);
}

} // namespace

void installResultsAccessibility()
{
    // A factory stands in the list once, however often it is installed.
    QAccessible::installFactory(accessibleResults);
}

} // namespace tidemark
