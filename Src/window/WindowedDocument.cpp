#include "window/WindowedDocument.h"

#include "foundation/LocalizedText.h"
#include "window/ApplicationDelegate.h"
#include "window/SearchWindow.h"
#include "window/StopReplaceQuestion.h"
#include "window/TDMyDocumentController.h"

namespace tidemark {

WindowedDocument::WindowedDocument(ApplicationDelegate &application, QObject *parent)
    : MyDocument(parent), _application(application)
{}

WindowedDocument::~WindowedDocument() = default;

void WindowedDocument::makeWindowControllers()
{
    _windowController = std::make_unique<TDMyDocumentController>(*this);
}

void WindowedDocument::showWindows()
{
    if (!_windowController)
        return;
    _windowController->window()->show();
    _windowController->window()->raise();
    _windowController->window()->activateWindow();
}

bool WindowedDocument::windowShouldClose()
{
    if (_application.countBusyWindows() > 0) {
        _askToClose();
        return false;
    }
    if (_myDocumentController != nullptr)
        _myDocumentController->stopSearch();
    return true;
}

void WindowedDocument::_askToClose()
{
    QWidget *window = _myDocumentController != nullptr ? _myDocumentController->window() : nullptr;
    askToStopReplace(window,
                     {localizedString("Continue Replace and Don‘t Close Window"),
                      localizedString("Stop Replace and Close Window"), [this] { _stopAndClose(); },
                      [window] {
                          if (window != nullptr)
                              window->close();
                      }},
                     this);
}

void WindowedDocument::_stopAndClose()
{
    if (_myDocumentController != nullptr) {
        _myDocumentController->stopSearch();
        _myDocumentController->setStopReplace(true);
    }
    Q_EMIT closeConfirmed();
}

void WindowedDocument::windowWillClose()
{
    saveUserDefaultsForWindow();
    // What its search still tells comes too late; a message would open on a window that is gone.
    if (_myDocumentController != nullptr)
        _myDocumentController->searchControl().abandonSearch();
}

void WindowedDocument::windowWillMiniaturize()
{
    if (_myDocumentController != nullptr)
        _myDocumentController->hideProgressIndicator();
}

void WindowedDocument::windowDidDeminiaturize()
{
    if (_myDocumentController != nullptr)
        _myDocumentController->showProgressIndicatorIfSearching();
}

} // namespace tidemark
