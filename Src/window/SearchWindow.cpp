#include "window/SearchWindow.h"

#include "ui_MyDocument.h"
#include "window/WindowLayoutMemory.h"
#include "window/WindowedDocument.h"

#include <QCloseEvent>
#include <QScreen>
#include <QWindowStateChangeEvent>

namespace tidemark {

SearchWindow::SearchWindow(WindowedDocument &document)
    : _document(document), _ui(std::make_unique<Ui::MyDocument>())
{
    _ui->setupUi(this);
    setWindowTitle(MyDocument::displayName());
    resize(size().boundedTo(screen()->availableSize() - FRAME));
    // A few locations fit; the results get the rest.
    const int formHeight = qMin(_ui->searchFormPane->sizeHint().height(),
                                qMax(_ui->searchFormPane->minimumSizeHint().height(), height() * 2 / 5));
    _ui->splitView->setSizes({formHeight, height() - formHeight});
    connect(&document, &WindowedDocument::closeConfirmed, this, &SearchWindow::_closeConfirmed);
}

SearchWindow::~SearchWindow() = default;

void SearchWindow::_closeConfirmed()
{
    _isCloseConfirmed = true;
    close();
}

/// Narrow, the options take more rows.
QSize SearchWindow::smallestSize() const
{
    const int room =
        qMax(_ui->searchFormPane->minimumSizeHint().width(), _ui->resultsPane->minimumSizeHint().width());
    const int width = qMax(minimumWidth(), room);
    int height = minimumSizeHint().height();
    for (const OptionsRow *row : {_ui->optionsRow, _ui->leaveOutOptions}) {
        if (!row->isHidden())
            height += qMax(0, row->heightAt(row->width() - (this->width() - width)) - row->height());
    }
    return minimumSize().expandedTo({width, height});
}

void SearchWindow::closeEvent(QCloseEvent *event)
{
    if (!_isCloseConfirmed && !_document.windowShouldClose()) {
        event->ignore();
        return;
    }
    saveLayout(*this);
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
