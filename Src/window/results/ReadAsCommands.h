#pragma once

#include "session/FindResults.h"

#include <QObject>

namespace tidemark {

class ResultsActions;
class ResultsNavigation;
class ResultsTreeModel;
class SearchControl;
class TDSearchResultsOutlineView;

/// Asks in what a file that couldn't be read is to be read, has it searched once more, and leads to what came
/// of that. Main thread only.
class ReadAsCommands : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the object; the view shows the model.
    ReadAsCommands(SearchControl &search, const ResultsTreeModel &model, TDSearchResultsOutlineView &view,
                   ResultsActions &actions, QObject *parent = nullptr);

private:
    void _ask(const TDFindResultItem &item);
    void _show(const FindResultItems &files);

    SearchControl &_search;
    const ResultsTreeModel &_model;
    TDSearchResultsOutlineView &_view;
};

} // namespace tidemark
