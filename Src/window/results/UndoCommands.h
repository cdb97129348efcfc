#pragma once

#include "replace/RewriteUndo.h"
#include "session/ListedFiles.h"

#include <QObject>

class QAction;

namespace tidemark {

class MyDocument;
class ReplaceControl;
class SearchControl;
class TDSearchResultsOutlineView;

/// Undo and Redo of replacements: what they would do, in the texts of their actions, and doing it. The
/// journal isn't read before somebody wants to know; until then the actions can be chosen. Main thread only.
class UndoCommands : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the object.
    UndoCommands(MyDocument &document, ReplaceControl &replace, SearchControl &search,
                 TDSearchResultsOutlineView &view, QAction &undo, QAction &redo, QObject *parent);

    /// Looks at the journal again: another window or another process may have changed it. Single replacements
    /// so far become a step.
    void update();
    /// Takes any step back. What is listed follows.
    void takeBack(const QByteArray &stepId);

Q_SIGNALS:
    /// After the results have followed and the status tells it; `newStep` is empty when there is none.
    void tookBack(quint64 filesFailed, const QByteArray &newStep);

private:
    struct LastStep
    {
        bool isKnown = false;
        std::optional<UndoStep> step;
    };

    void _show();
    void _noteReplacedMatch();
    void _takeBackLast(UndoStepKind kind);
    void _showEnd(const RewriteUndo::Outcome &outcome, UndoStepKind kind);
    /// False when this object has gone away meanwhile.
    bool _searchAgain(const RewriteUndo::Outcome &outcome);
    void _markRefused(const RewriteUndo::Outcome &outcome);
    void _tellProblem(const RewriteUndo::Outcome &outcome);

    MyDocument &_document;
    ReplaceControl &_replace;
    SearchControl &_search;
    TDSearchResultsOutlineView &_view;
    QAction &_undo;
    QAction &_redo;
    LastStep _lastUndo;
    LastStep _lastRedo;
    ListedFiles _listedFiles;
};

} // namespace tidemark
