#pragma once

#include "replace/TDReplaceEngine.h"
#include "replace/TDSelectedMatchReplacement.h"
#include "window/FindResults.h"
#include "window/SearchTerms.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

class QMessageBox;

namespace tidemark {

class ResultsNavigation;
class ResultsTreeModel;
class TDSearchResultsOutlineView;

/// What the replace commands need to know of the document and the application. All are called on the main
/// thread.
struct ReplaceContext
{
    std::function<QString()> findText;
    std::function<QString()> replaceText;
    IsFileInSearchLocations isFileInSearchLocations;
    std::function<void()> increaseBusyWindowCount;
    std::function<void()> decreaseBusyWindowCount;
    /// What the results were found with, if that is known.
    std::function<std::optional<SearchTerms>()> searchedTerms = [] { return std::nullopt; };
};

/// The four replace commands of a window with their sheets. A replacement of many matches runs on the main
/// thread and delivers events between the files; meanwhile isReplacing() holds, the commands do nothing, and
/// nothing else may change the results. It survives that the window goes away meanwhile.
class ReplaceCommands : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool replacing READ isReplacing NOTIFY replacing)

public:
    /// All references must outlive the object.
    ReplaceCommands(ResultsTreeModel &model, TDSearchResultsOutlineView &view, ResultsNavigation &navigation,
                    ReplaceContext context, QObject *parent = nullptr);
    ~ReplaceCommands() override;

    void replace();
    /// Once the last of all matches is replaced, it does nothing until another one is highlighted.
    void replaceAndFind();
    /// Asks first, unless the user has ticked not to be asked again.
    void replaceSelection();
    /// Always asks first.
    void replaceAll();

    bool isReplacing() const { return _isReplacing; }
    bool stopReplace() const { return *_stopReplace; }
    /// Asks a running replacement to stop; every command clears it at its start.
    void setStopReplace(bool stop) { *_stopReplace = stop; }

    /// Not kept between runs of the application.
    static bool suppressAlertReplaceSelection() { return _suppressAlertReplaceSelection; }
    static void setSuppressAlertReplaceSelection(bool suppress) { _suppressAlertReplaceSelection = suppress; }

Q_SIGNALS:
    void replacing(bool isReplacing);
    /// Files done of the files with something to replace.
    void progressed(quint64 filesDone, quint64 fileCount);
    /// Sent at the end of every run over many matches, before replacing(false), when the results are shown
    /// anew.
    void finished(const tidemark::TDSelectedMatchReplacement::Outcome &outcome);

private:
    struct Extent
    {
        quint64 matches = 0;
        quint64 files = 0;
    };
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
    ReplaceRequest _request() const;
    static Extent _extentOf(const FindResultItems &items);
    FindResultItems _allItems() const;
    QString _informativeText(Extent extent) const;
    QMessageBox *_ask(const QString &question, const QString &confirmation, Extent extent,
                      void (ReplaceCommands::*confirmed)());
    void _selectionConfirmed();
    void _allConfirmed();
    void _replaceSelectedMatches(const FindResultItems &items, const std::function<void()> &afterwards = {});
    TDSelectedMatchReplacement::BetweenFiles _deliverEvents(quint64 fileCount);
    void _showEnd(const TDSelectedMatchReplacement::Outcome &outcome,
                  const std::function<void()> &afterwards);
    void _endRun(const TDSelectedMatchReplacement::Outcome &outcome, const std::function<void()> &afterwards);

    ResultsTreeModel &_model;
    TDSearchResultsOutlineView &_view;
    ResultsNavigation &_navigation;
    ReplaceContext _context;
    /// A run keeps it beyond the end of this object.
    std::shared_ptr<std::atomic<bool>> _stopReplace;
    ReplacedMatch _lastReplaced;
    bool _isReplacing = false;
    bool _hasSheet = false;
    static bool _suppressAlertReplaceSelection;
};

} // namespace tidemark
