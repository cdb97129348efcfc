#pragma once

#include "session/MyDocument.h"

#include <memory>

namespace tidemark {

class ApplicationDelegate;
class TDMyDocumentController;

/// A search document with its window: makes it, shows it, and decides when it may close. Main thread only.
class WindowedDocument : public MyDocument
{
    Q_OBJECT

public:
    /// The application outlives its documents.
    explicit WindowedDocument(ApplicationDelegate &application, QObject *parent = nullptr);
    ~WindowedDocument() override;

    /// Loads the window, which belongs to the document from then on.
    void makeWindowControllers();
    void showWindows();
    /// Null until the window's controller has loaded its window.
    TDMyDocumentController *myDocumentController() const { return _myDocumentController; }
    void setMyDocumentController(TDMyDocumentController *controller) { _myDocumentController = controller; }
    ApplicationDelegate &application() const { return _application; }

    /// False when a replace runs anywhere in the application; then the user is asked, and closeConfirmed() is
    /// sent if the window is to close nevertheless.
    bool windowShouldClose();
    void windowWillClose();
    void windowWillMiniaturize();
    void windowDidDeminiaturize();

Q_SIGNALS:
    void closeConfirmed();

private:
    void _askToClose();
    void _stopAndClose();

    ApplicationDelegate &_application;
    TDMyDocumentController *_myDocumentController = nullptr;
    /// Goes before the document, which it observes.
    std::unique_ptr<TDMyDocumentController> _windowController;
};

} // namespace tidemark
