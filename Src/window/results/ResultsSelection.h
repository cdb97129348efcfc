#pragma once

#include "session/FindResults.h"
#include "session/ResultsRemoval.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>

namespace tidemark {

class ResultsTreeModel;
class TDSearchResultsOutlineView;

/// What is selected in the results, as nodes and as places in the order shown.
class ResultsSelection
{
public:
    /// All must outlive the object; the view shows the model.
    ResultsSelection(const FindResults &results, const ResultsTreeModel &model,
                     const TDSearchResultsOutlineView &view)
        : _results(results), _model(model), _view(view)
    {}

    bool hasSelection() const;
    /// The node in the selected row, which can be a file; null without a selection.
    std::shared_ptr<TDFindResultItem> currentlySelectedFindResultItem() const;
    /// The selected nodes from top to bottom.
    FindResultItems selectedObjects() const;
    /// Of the selected file, or of the file of the selected line; empty without a selection.
    FilePath pathOfCurrentlySelectedItem() const;
    /// The selected lines, each without its line end, joined by line feeds; null when no line is selected.
    QString selectedLines() const;

    /// From top to bottom.
    QList<ResultPath> paths() const;
    std::optional<ResultPath> lastPath() const;
    std::shared_ptr<TDFindResultItem> itemAt(ResultPath path) const;
    FindResultItems itemsAt(const QList<ResultPath> &paths) const;

private:
    const FindResults &_results;
    const ResultsTreeModel &_model;
    const TDSearchResultsOutlineView &_view;
};

} // namespace tidemark
