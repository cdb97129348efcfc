#pragma once

#include <QObject>

#include <functional>

class QAction;

namespace tidemark {

class ResultsTreeModel;
class TDFindResultItem;
class TDSearchResultsOutlineView;

/// Walks through files with which something is wrong, one after the other and round again. Main thread only.
class FailureWalk : public QObject
{
    Q_OBJECT

public:
    using HasFailed = std::function<bool(const TDFindResultItem &file)>;
    /// All must outlive the object; the view shows the model.
    FailureWalk(const ResultsTreeModel &model, TDSearchResultsOutlineView &view, QAction &showNext,
                HasFailed hasFailed, QObject *parent = nullptr);

    /// To be called when there are others than before, but for files that are removed: the action is enabled
    /// while there are any.
    void update();
    qsizetype count() const { return _count; }
    /// Selects the next such file in the order shown.
    void showNext();

Q_SIGNALS:
    void countChanged();

private:
    const ResultsTreeModel &_model;
    TDSearchResultsOutlineView &_view;
    QAction &_showNext;
    const HasFailed _hasFailed;
    qsizetype _count = 0;
};

} // namespace tidemark
