#pragma once

#include "session/FindResults.h"
#include "window/results/ResultsSelection.h"

#include <QObject>

#include <optional>

namespace tidemark {

class ResultsTreeModel;
class TDSearchResultsOutlineView;

/// Walks through the matches of the results, keeps the selection and the highlighted match together, and
/// removes rows from the results.
class ResultsNavigation : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool firstItemSelected READ firstItemSelected NOTIFY firstItemSelectedChanged)
    Q_PROPERTY(bool lastItemSelected READ lastItemSelected NOTIFY lastItemSelectedChanged)

public:
    /// All must outlive the object; the view shows the model.
    ResultsNavigation(FindResults &results, ResultsTreeModel &model, TDSearchResultsOutlineView &view,
                      QObject *parent = nullptr);

    const ResultsSelection &selection() const { return _selection; }

    /// Whether the highlighted match is the first or the last of all results.
    bool firstItemSelected() const { return _firstItemSelected; }
    bool lastItemSelected() const { return _lastItemSelected; }

    void moveToNextMatch();
    void moveToPreviousMatch();
    void moveToNextMatchByExtendingSelection();
    void moveToPreviousMatchByExtendingSelection();
    void moveToFirstMatchInNextFile();
    void moveToFirstMatchInFile();
    void selectFirstMatch();

    void highlightFirstMatchInCurrentlySelectedMatchLine();
    void highlightLastMatchInCurrentlySelectedMatchLine();
    void removeHighlightingFromCurrentlySelectedMatchLine();
    bool moveToNextMatchInMatchLine();
    bool moveToPreviousMatchInMatchLine();

    void expandCollapseAll();
    void hideAll();
    void showAll();
    void removeSelected();

    void determineIfFirstItemSelected();
    void determineIfLastItemSelected();
    void determineIfFirstOrLastItemSelected();

    /// The node whose match is highlighted; an error's node, or null, where there is no match.
    const std::shared_ptr<TDFindResultItem> &currentlySelectedMatchLineItem() const { return _currentItem; }
    TDMatchLine *currentlySelectedMatchLine() const;

    /// Selects the current match line's row alone and brings it into view, whatever hid it, as before a
    /// replacement.
    void showCurrentMatchLine();
    /// Whether the current match line has a match left.
    bool hasMatchToReplace() const;
    bool canMoveToNextFile() const;
    bool canMoveToPreviousFile() const;
    /// Brings the highlighted match into view.
    void scrollToHighlightedMatch();

    /// Shared by all windows: what expandCollapseAll() did last was to show.
    static bool showHideState() { return _showHideState; }
    static void setShowHideState(bool state) { _showHideState = state; }

public Q_SLOTS:
    /// While a replacement runs nothing is removed.
    void setRemovalEnabled(bool enabled) { _isRemovalEnabled = enabled; }

Q_SIGNALS:
    void firstItemSelectedChanged(bool selected);
    void lastItemSelectedChanged(bool selected);
    /// Also after the highlighted match changed.
    void selectionChanged();

private:
    void _focusView();
    void _performMoveToNextMatch(bool extend);
    void _performMoveToPreviousMatch(bool extend);
    void _selectRowAfter(int row, bool extend);
    void _selectRowBefore(int row, bool extend);
    bool _hasLineToStartFrom();
    void _selectFirstLineOfFile(int file);
    void _scrollToFileOfSelectedRow();
    bool _makeSelectedRowCurrent();
    std::shared_ptr<TDFindResultItem> _currentMatchLineItem() const;
    void _setCurrentItem(const std::shared_ptr<TDFindResultItem> &item);
    void _highlight(qint64 index);

    void _selectionDidChange();
    void _fileWasSelected(int row);
    void _itemDidCollapse();
    void _resumeAfterFiltering();
    void _expandEverything();
    void _collapseEverything();
    void _selectPath(ResultPath path);

    FindResults &_results;
    ResultsTreeModel &_model;
    TDSearchResultsOutlineView &_view;
    ResultsSelection _selection;
    std::shared_ptr<TDFindResultItem> _currentItem;
    bool _firstItemSelected = false;
    bool _lastItemSelected = false;
    bool _itemWillCollapse = false;
    bool _isRemovalEnabled = true;
    static bool _showHideState;
};

} // namespace tidemark
