#include "app/WindowMenu.h"

#include "app/TDApplicationController.h"
#include "foundation/LocalizedText.h"
#include "window/TDMyDocumentController.h"
#include "window/WindowedDocument.h"

#include <QMenuBar>

namespace tidemark {

namespace {

constexpr qsizetype LONGEST_TEXT = 40;

/// All windows bear the same title; what they search for tells them apart.
QString entryFor(const WindowedDocument &document, qsizetype number)
{
    const QString text = document.findText().left(LONGEST_TEXT).simplified();
    const QString entry = formatted(QStringLiteral("%d  "), {number}) + MyDocument::displayName();
    QString whole = text.isEmpty() ? entry : entry + QStringLiteral(" – ") + text;
    return whole.replace(u'&', QStringLiteral("&&"));
}

void toggleMaximized(QWidget *window)
{
    window->setWindowState(window->windowState() ^ Qt::WindowMaximized);
}

/// The menu with its fixed entries; what lies behind them is listed anew whenever it is shown.
void listWindows(QMenu *menu, qsizetype fixedEntries, const TDMyDocumentController &shown,
                 TDApplicationController &application)
{
    const QList<QAction *> entries = menu->actions();
    for (QAction *entry : entries.sliced(fixedEntries))
        delete entry;
    const QList<WindowedDocument *> documents = application.documents();
    for (qsizetype index = 0; index < documents.size(); ++index) {
        WindowedDocument *document = documents[index];
        QAction *entry = menu->addAction(entryFor(*document, index + 1));
        entry->setCheckable(true);
        entry->setChecked(document->myDocumentController() == &shown);
        QObject::connect(entry, &QAction::triggered, document, &WindowedDocument::showWindows);
    }
}

} // namespace

void addWindowMenu(QMenuBar *bar, TDMyDocumentController &controller, TDApplicationController &application)
{
    QMenu *menu = bar->addMenu(localizedString("&Window"));
    SearchWindow *window = controller.window();
    menu->addAction(localizedString("&Minimize"), window, &QWidget::showMinimized);
    menu->addAction(localizedString("&Zoom"), window, [window] { toggleMaximized(window); });
    menu->addAction(controller.actions().otherPane);
    menu->addSeparator();
    const qsizetype fixedEntries = menu->actions().size();
    QObject::connect(menu, &QMenu::aboutToShow, menu, [menu, fixedEntries, &controller, &application] {
        listWindows(menu, fixedEntries, controller, application);
    });
}

} // namespace tidemark
