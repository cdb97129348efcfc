#pragma once

#include "session/ReplaceControl.h"
#include "session/SearchControl.h"
#include "window/SearchWindow.h"
#include "window/SearchWindowActions.h"
#include "window/form/SearchForm.h"
#include "window/locations/SearchLocationsController.h"

#include <QObject>

#include <memory>

namespace tidemark {

class WindowedDocument;
class ContextPane;
class ResultsPane;
class TDSearchResultsOutlineView;

enum class StartStopButton { Off, On };

/// The controller of one search window: loads the window, holds those who do its single duties, and connects
/// them with each other and with the document. Main thread only.
class TDMyDocumentController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool searching READ searching NOTIFY searchingChanged)

public:
    /// The document owns the controller.
    explicit TDMyDocumentController(WindowedDocument &document);
    ~TDMyDocumentController() override;

    SearchWindow *window() { return &_window; }
    const SearchWindowActions &actions() const { return _actions; }
    SearchControl &searchControl() { return _search; }
    ReplaceControl &replaceControl() { return _replace; }
    SearchForm &searchForm() { return *_form; }
    ResultsPane &resultsPane() { return *_results; }
    ContextPane &contextPane() { return *_context; }
    SearchLocationsController &locations() { return _locations; }

    /// What the start/stop button does in this state: starts a search when it is on, stops it when it is off.
    void startSearch(StartStopButton sender);
    void stopSearch() { _search.stopSearch(); }
    bool searching() const { return _search.searching(); }

    bool isReplacing() const { return _replace.isReplacing(); }
    bool stopReplace() const { return _replace.stopReplace(); }
    /// Asks a running replace to stop.
    void setStopReplace(bool stop) { _replace.setStopReplace(stop); }
    void increaseBusyWindowCount();
    void decreaseBusyWindowCount();

    void hideProgressIndicator();
    void showProgressIndicatorIfSearching();

    /// Opens the panel for files and folders.
    void addSearchLocation();

Q_SIGNALS:
    void searchingChanged(bool searching);
    /// A replace over many matches has ended; only now may the document go away.
    void replaceEnded();

private:
    ReplaceContext _replaceContext();
    void _makePanes();
    void _connectSearch();
    void _connectActions();
    void _connectReplace();
    void _toggleSearch();
    void _stopWhatRuns();
    void _noteWhatRuns();
    void _switchPane();

    WindowedDocument &_document;
    SearchWindow _window;
    SearchWindowActions _actions;
    SearchLocationsController _locations;
    SearchControl _search;
    ReplaceControl _replace;
    std::unique_ptr<SearchForm> _form;
    std::unique_ptr<ResultsPane> _results;
    std::unique_ptr<ContextPane> _context;
};

} // namespace tidemark
