#pragma once

#include "session/FindResults.h"
#include "session/ReplaceControl.h"

#include <QObject>

#include <functional>

class QMessageBox;

namespace tidemark {

class ResultsNavigation;
class ResultsTreeModel;
class SearchControl;
class TDSearchResultsOutlineView;

/// The four replace commands of a window with their sheets. During a run of replacements they do nothing.
class ReplaceCommands : public QObject
{
    Q_OBJECT

public:
    /// All references must outlive the object; `search` tells what the results were found with.
    ReplaceCommands(ReplaceControl &control, const SearchControl &search, ResultsTreeModel &model,
                    TDSearchResultsOutlineView &view, ResultsNavigation &navigation,
                    QObject *parent = nullptr);

    /// Neither this nor the next one does anything in a file that the search still reads: what is found
    /// there later would have numbers from before.
    void replace();
    /// Once the last of all matches is replaced, it does nothing until another one is highlighted.
    void replaceAndFind();
    /// Asks first, unless the user has ticked not to be asked again.
    void replaceSelection();
    /// Always asks first.
    void replaceAll();

    /// Whether that holds for the highlighted match.
    bool isInFileStillRead() const;

    /// Every file with its lines, as shown.
    FindResultItems allItems() const;

    /// Not kept between runs of the application.
    static bool suppressAlertReplaceSelection() { return _suppressAlertReplaceSelection; }
    static void setSuppressAlertReplaceSelection(bool suppress) { _suppressAlertReplaceSelection = suppress; }

private:
    /// One replaced match, to notice that the next command stands on it still.
    struct ReplacedMatch
    {
        const TDMatchLine *line = nullptr;
        qint64 index = TD_NO_HIGHLIGHTED_MATCH;
        QString findText;
        QString replaceText;
        friend bool operator==(const ReplacedMatch &, const ReplacedMatch &) = default;
    };

    bool _beginCommand();
    bool _performReplace();
    ReplacedMatch _currentMatch() const;
    QString _informativeText(const LinesByFile &lines) const;
    QString _changeText(ReplaceExtent extent) const;
    QMessageBox *_ask(const QString &question, const QString &confirmation, const LinesByFile &lines,
                      void (ReplaceCommands::*confirmed)());
    void _selectionConfirmed();
    void _allConfirmed();
    void _replaceMatches(const LinesByFile &lines, const std::function<void()> &afterwards = {});
    void _showEnd(const ReplaceControl::Outcome &outcome, const std::function<void()> &afterwards);

    ReplaceControl &_control;
    const SearchControl &_search;
    ResultsTreeModel &_model;
    TDSearchResultsOutlineView &_view;
    ResultsNavigation &_navigation;
    ReplacedMatch _lastReplaced;
    bool _hasSheet = false;
    static bool _suppressAlertReplaceSelection;
};

} // namespace tidemark
