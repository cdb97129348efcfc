#pragma once

#include "replace/RewriteUndo.h"

#include <QObject>

class QAction;

namespace tidemark {

class MyDocument;
class ReplaceControl;
class SearchControl;
class TDSearchResultsOutlineView;

/// Undo and Redo of replacements: what they would do now, in the texts of their actions, and doing it. Main
/// thread only.
class UndoCommands : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the object.
    UndoCommands(MyDocument &document, ReplaceControl &replace, SearchControl &search,
                 TDSearchResultsOutlineView &view, QAction &undo, QAction &redo, QObject *parent);

    /// Looks at the journal again: another window or another process may have changed it.
    void update();
    /// Takes any step back.
    void takeBack(const QByteArray &stepId);

private:
    void _takeBackLast(UndoStepKind kind);
    void _showEnd(const RewriteUndo::Outcome &outcome);

    MyDocument &_document;
    ReplaceControl &_replace;
    SearchControl &_search;
    TDSearchResultsOutlineView &_view;
    QAction &_undo;
    QAction &_redo;
};

} // namespace tidemark
