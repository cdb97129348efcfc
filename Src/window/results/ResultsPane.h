#pragma once

#include "window/results/ExportPanel.h"
#include "window/results/FailureWalk.h"
#include "window/results/LeftOutNotice.h"
#include "window/results/OutcomeNotice.h"
#include "window/results/ReplaceCommands.h"
#include "window/results/ResultsActions.h"
#include "window/results/ResultsNavigation.h"
#include "window/results/ResultsTreeModel.h"
#include "window/results/UndoCommands.h"

#include <QObject>
#include <QPointer>

namespace Ui {
class MyDocument;
}

namespace tidemark {

class MyDocument;
class ResultsFilterBox;
class SearchControl;
class SearchWindow;
class ShownReplacements;
struct SearchWindowActions;

/// The lower pane of a search window: the results with their commands and buttons, the section title and the
/// status line.
class ResultsPane : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the object.
    ResultsPane(MyDocument &document, SearchWindow &window, const SearchWindowActions &actions,
                SearchControl &search, ReplaceControl &replace);

    TDSearchResultsOutlineView &outlineView() const;
    ResultsNavigation &navigation() { return _navigation; }
    UndoCommands &undoCommands() { return _undoCommands; }
    ExportPanel &exportPanel() { return _exportPanel; }
    ReplaceCommands &replaceCommands() { return _replaceCommands; }
    ResultsActions &resultsActions() { return _resultsActions; }
    ResultsFilterBox &filterBox() { return *_filterBox; }
    ShownReplacements &shownReplacements() { return *_shownReplacements; }

    /// Before a search starts: the order of arrival, and an empty hint.
    void prepareForSearch();
    /// After it has ended: a match is selected and the results have the keyboard.
    void searchFinished();

Q_SIGNALS:
    void searchOfEverythingRequested();

private:
    void _setUpToolTips();
    void _setUpTexts();
    void _setUpCommands();
    void _setUpKeys();
    void _setUpButtons();
    void _setUpReplaceProgress();
    void _setUpOutcome();
    void _setUpEncodings();
    void _noteUnreadable();
    void _setUpTextSize();
    void _noteTextSize();
    void _expandWhileFew(qsizetype first, qsizetype count);
    void _noteResults();
    void _showReplacing(bool isReplacing);
    void _showReplaceProgress(quint64 filesDone, quint64 fileCount);
    void _showOutcome(const TDSelectedMatchReplacement::Outcome &outcome);
    void _focusResults();
    void _showHint();
    void _setUpFilter();
    void _noteFilter();
    void _announceStatus();
    void _leaveOut(const QString &pattern);

    MyDocument &_document;
    SearchControl &_search;
    ReplaceControl &_replace;
    Ui::MyDocument &_ui;
    const SearchWindowActions &_actions;
    ResultsTreeModel _model;
    ResultsNavigation _navigation;
    ResultsActions _resultsActions;
    ReplaceCommands _replaceCommands;
    ExportPanel _exportPanel;
    UndoCommands _undoCommands;
    LeftOutNotice _leftOutNotice;
    OutcomeNotice _outcomeNotice;
    FailureWalk _failureWalk;
    FailureWalk _unreadableWalk;
    ResultsFilterBox *_filterBox = nullptr; ///< of the window
    ShownReplacements *_shownReplacements;  ///< a child
    QString _kindsOfLastSearch;
    quint64 _linesOfSearch = 0; ///< that have arrived since the results were cleared
    quint64 _countOfFilesToReplaceIn = 0;
};

} // namespace tidemark
