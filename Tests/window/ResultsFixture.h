#pragma once

#include "support/ResultNodes.h"
#include "support/gui/OpenWindow.h"
#include "window/results/ResultsTreeModel.h"

namespace tidemark::test {

/// A search window that shows these results, with the keyboard there.
class ResultsWindow : public OpenWindow
{
public:
    explicit ResultsWindow(ApplicationDelegate &application, const FindResultItems &files = {});

    /// "file", or "file:line", of each selected node, both counted from 0 as shown.
    QString selection() const;
    /// "file:line:match" of the highlighted match, "none" without one. Fails when more than one is
    /// highlighted.
    QString highlighted() const;
    void pressKey(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    FindResults &results = document.findResults();
    TDSearchResultsOutlineView &view = *outline();
    ResultsTreeModel &model = dynamic_cast<ResultsTreeModel &>(*view.model());
    ResultsNavigation &navigation = controller().resultsPane().navigation();
};

} // namespace tidemark::test
