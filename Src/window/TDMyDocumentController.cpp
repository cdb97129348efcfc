#include "window/TDMyDocumentController.h"

#include "ui_MyDocument.h"
#include "window/ApplicationDelegate.h"
#include "window/ErrorSheet.h"
#include "window/StopReplaceQuestion.h"
#include "window/WindowLayoutMemory.h"
#include "window/WindowedDocument.h"
#include "window/context/ContextPane.h"
#include "window/context/ContextView.h"
#include "window/locations/FilesAndFoldersPanel.h"
#include "window/results/ResultsPane.h"

#include <QAction>
#include <QMessageBox>

namespace tidemark {

TDMyDocumentController::TDMyDocumentController(WindowedDocument &document)
    : _document(document), _window(document), _actions(SearchWindowActions::makeFor(&_window)),
      _locations(document), _search(document), _replace(_replaceContext())
{
    _makePanes();
    _connectSearch();
    _connectActions();
    _connectReplace();
    _noteWhatRuns();
    document.setMyDocumentController(this);
    _form->focusFindText();
}

TDMyDocumentController::~TDMyDocumentController()
{
    _document.setMyDocumentController(nullptr);
}

ReplaceContext TDMyDocumentController::_replaceContext()
{
    return {[this] { return _document.findText(); }, [this] { return _document.replaceText(); },
            [this](const FilePath &path) { return _locations.isFileInSearchLocationsForPath(path); },
            [this] { increaseBusyWindowCount(); }, [this] { decreaseBusyWindowCount(); }};
}

void TDMyDocumentController::_makePanes()
{
    _form = std::make_unique<SearchForm>(_document, _window, _actions, _search, _locations);
    _results = std::make_unique<ResultsPane>(_document, _window, _actions, _search, _replace);
    _context = std::make_unique<ContextPane>(_document, *_results, _replace, *_actions.showContext);
    connect(&_window, &SearchWindow::activated, _context.get(), &ContextPane::lookAgain);
    _form->takeDropsAnywhere(_window);
    restoreLayout(_window);
}

void TDMyDocumentController::_connectSearch()
{
    connect(&_search, &SearchControl::searchWillStart, _results.get(), &ResultsPane::prepareForSearch);
    connect(&_search, &SearchControl::searchFinished, _results.get(), &ResultsPane::searchFinished);
    connect(&_search, &SearchControl::searchFinished, _form.get(), [this] {
        if (_document.findText().isEmpty())
            _form->focusFindText();
    });
    connect(&_search, &SearchControl::searchingChanged, this, &TDMyDocumentController::searchingChanged);
    connect(&_search, &SearchControl::searchingChanged, this, &TDMyDocumentController::_noteWhatRuns);
    connect(&_search, &SearchControl::errorOccured, this, [this](const TDError &error) {
        const QMessageBox *sheet = presentErrorSheet(&_window, error);
        // The find text is what has to be mended.
        connect(sheet, &QDialog::finished, _form.get(), &SearchForm::focusFindText);
    });
    connect(_results.get(), &ResultsPane::searchOfEverythingRequested, this, [this] {
        if (!isReplacing())
            _search.startSearchOfEverything();
    });
    connect(_form.get(), &SearchForm::startRequested, this, [this] { startSearch(StartStopButton::On); });
}

void TDMyDocumentController::_connectActions()
{
    connect(_form.get(), &SearchForm::addLocationRequested, this, &TDMyDocumentController::addSearchLocation);
    connect(_actions.startStopSearch, &QAction::triggered, this, &TDMyDocumentController::_toggleSearch);
    connect(_actions.stop, &QAction::triggered, this, &TDMyDocumentController::_stopWhatRuns);
    connect(_actions.close, &QAction::triggered, &_window, &QWidget::close);
    connect(_actions.otherPane, &QAction::triggered, this, &TDMyDocumentController::_switchPane);
}

void TDMyDocumentController::_connectReplace()
{
    connect(&_replace, &ReplaceControl::replacing, this, [this](bool isReplacing) {
        _noteWhatRuns();
        if (!isReplacing)
            Q_EMIT replaceEnded();
    });
}

void TDMyDocumentController::startSearch(StartStopButton sender)
{
    if (sender == StartStopButton::Off)
        stopSearch();
    else if (!isReplacing())
        _search.startSearch();
}

void TDMyDocumentController::_toggleSearch()
{
    startSearch(searching() ? StartStopButton::Off : StartStopButton::On);
}

void TDMyDocumentController::_stopWhatRuns()
{
    stopSearch();
    setStopReplace(true);
}

void TDMyDocumentController::_noteWhatRuns()
{
    _actions.stop->setEnabled(searching() || isReplacing());
    _form->setSearchEnabled(!isReplacing());
    // They decide how each file is backed up.
    _form->setLocationsReadOnly(isReplacing());
}

void TDMyDocumentController::_switchPane()
{
    const bool isInContext = _context->view().hasFocus();
    const bool isInResults = _results->outlineView().hasFocus();
    if (isInContext || (isInResults && _context->isHidden()))
        _form->focusFindText();
    else if (isInResults)
        _context->view().setFocus(Qt::ShortcutFocusReason);
    else
        _results->outlineView().setFocus(Qt::ShortcutFocusReason);
}

void TDMyDocumentController::increaseBusyWindowCount()
{
    ApplicationDelegate &application = _document.application();
    application.setCountBusyWindows(application.countBusyWindows() + 1);
}

void TDMyDocumentController::decreaseBusyWindowCount()
{
    ApplicationDelegate &application = _document.application();
    application.setCountBusyWindows(application.countBusyWindows() - 1);
    if (application.countBusyWindows() == 0)
        replaceHasEnded();
}

void TDMyDocumentController::hideProgressIndicator()
{
    _window.ui().progressIndicator->hide();
}

void TDMyDocumentController::showProgressIndicatorIfSearching()
{
    _window.ui().progressIndicator->setVisible(searching());
}

void TDMyDocumentController::addSearchLocation()
{
    auto *panel = new FilesAndFoldersPanel(&_window);
    connect(panel, &FilesAndFoldersPanel::chosen, &_locations,
            &SearchLocationsController::addSearchLocations);
    panel->open();
}

} // namespace tidemark
