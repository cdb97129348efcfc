#pragma once

#include <QObject>

class QAction;

namespace tidemark {

class ResultsTreeModel;
class TDSearchResultsOutlineView;

/// Walks through the files that are marked, as their replacement failed, one after the other and round again.
/// Main thread only.
class FailureWalk : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the object; the view shows the model.
    FailureWalk(const ResultsTreeModel &model, TDSearchResultsOutlineView &view, QAction &showFailures,
                QObject *parent = nullptr);

    /// To be called when marks, or files, have come or gone: the action is enabled while there are any.
    void update();
    /// Selects the next marked file in the order shown.
    void showNext();

private:
    const ResultsTreeModel &_model;
    TDSearchResultsOutlineView &_view;
    QAction &_showFailures;
};

} // namespace tidemark
