#include "window/SearchWindow.h"

#include "ui_MyDocument.h"
#include "window/WindowedDocument.h"

#include <QCloseEvent>
#include <QScreen>
#include <QWindowStateChangeEvent>

namespace tidemark {

namespace {

/// What a window manager puts around a window, roughly; nobody knows before it is shown.
constexpr QSize FRAME = {16, 48};

} // namespace

SearchWindow::SearchWindow(WindowedDocument &document)
    : _document(document), _ui(std::make_unique<Ui::MyDocument>())
{
    _ui->setupUi(this);
    setWindowTitle(MyDocument::displayName());
    resize(size().boundedTo(screen()->availableSize() - FRAME));
    // A few locations fit; the results get the rest.
    const int formHeight = _ui->searchFormPane->sizeHint().height();
    _ui->splitView->setSizes({formHeight, height() - formHeight});
    connect(&document, &WindowedDocument::closeConfirmed, this, &SearchWindow::_closeConfirmed);
}

SearchWindow::~SearchWindow() = default;

void SearchWindow::_closeConfirmed()
{
    _isCloseConfirmed = true;
    close();
}

void SearchWindow::closeEvent(QCloseEvent *event)
{
    if (!_isCloseConfirmed && !_document.windowShouldClose()) {
        event->ignore();
        return;
    }
    _document.windowWillClose();
    event->accept();
    Q_EMIT closed();
}

void SearchWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        Q_EMIT activated();
    if (event->type() != QEvent::WindowStateChange)
        return;
    const bool wasMinimized =
        static_cast<QWindowStateChangeEvent *>(event)->oldState().testFlag(Qt::WindowMinimized);
    if (isMinimized() && !wasMinimized)
        _document.windowWillMiniaturize();
    else if (!isMinimized() && wasMinimized)
        _document.windowDidDeminiaturize();
}

} // namespace tidemark
