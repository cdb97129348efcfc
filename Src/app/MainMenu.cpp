#include "app/MainMenu.h"

#include "app/EditMenu.h"
#include "app/KeySheet.h"
#include "app/TDApplicationController.h"
#include "app/WindowMenu.h"
#include "foundation/LocalizedText.h"
#include "window/TDMyDocumentController.h"
#include "window/results/ResultsPane.h"

#include <QMenuBar>

namespace tidemark {

namespace {

void addFileMenu(QMenuBar *bar, const SearchWindowActions &actions, TDApplicationController &application)
{
    QMenu *menu = bar->addMenu(localizedString("&File"));
    menu->addAction(localizedString("&New Window"), QKeySequence::New, &application,
                    &TDApplicationController::applicationOpenUntitledFile);
    menu->addSeparator();
    menu->addAction(actions.addLocation);
    menu->addAction(actions.removeLocation);
    menu->addSeparator();
    menu->addAction(actions.exportResults);
    menu->addAction(actions.history);
    menu->addSeparator();
    menu->addAction(actions.close);
    QAction *quit = menu->addAction(localizedString("&Quit"), QKeySequence::Quit, &application,
                                    &TDApplicationController::terminate);
    // On desktops without a key of their own for it.
    if (quit->shortcut().isEmpty())
        quit->setShortcut(Qt::CTRL | Qt::Key_Q);
    quit->setMenuRole(QAction::QuitRole);
}

void addSearchMenu(QMenuBar *bar, const SearchWindowActions &actions)
{
    QMenu *menu = bar->addMenu(localizedString("&Search"));
    menu->addAction(actions.startStopSearch);
    menu->addAction(actions.stop);
    menu->addSeparator();
    menu->addAction(actions.ignoreCase);
    menu->addAction(actions.regularExpression);
    menu->addAction(actions.unicode);
    menu->addAction(actions.wholeWords);
    menu->addAction(actions.fileTypes);
}

void addResultsMenu(QMenuBar *bar, TDMyDocumentController &controller)
{
    const SearchWindowActions &actions = controller.actions();
    ResultsActions &results = controller.resultsPane().resultsActions();
    QMenu *menu = bar->addMenu(localizedString("&Results"));
    menu->addActions({actions.nextMatch, actions.previousMatch, actions.firstMatchInNextFile,
                      actions.firstMatchInPreviousFile, actions.showFailures, actions.showUnreadableFiles,
                      actions.extendToNextMatch, actions.extendToPreviousMatch});
    menu->addSeparator();
    menu->addActions({actions.showReplacements, actions.showContext, actions.showEncodings});
    menu->addActions({actions.replace, actions.replaceAndFind, actions.replaceSelection, actions.replaceAll});
    menu->addSeparator();
    menu->addActions({actions.filterResults, actions.expandCollapseAll, actions.removeSelected});
    menu->addAction(actions.deleteBackups);
    menu->addSeparator();
    menu->addActions({actions.largerText, actions.smallerText, actions.standardTextSize});
    menu->addSeparator();
    menu->addActions({results.openAtMatchAction(), results.openAction(), results.revealAction(),
                      results.readAsAction(), results.copyLineAction(), results.copyPathAction(),
                      results.copyAsMenu()->menuAction()});
    menu->addSeparator();
    menu->addActions({results.leaveOutFolderAction(), results.leaveOutFilesLikeAction()});
    QObject::connect(menu, &QMenu::aboutToShow, &results, &ResultsActions::validateUserInterfaceItems);
}

void addHelpMenu(QMenuBar *bar, TDMyDocumentController &controller, TDApplicationController &application)
{
    QMenu *menu = bar->addMenu(localizedString("&Help"));
    menu->addAction(localizedString("Velkor Tidemark &Help"), QKeySequence::HelpContents, &application,
                    &TDApplicationController::showHelp);
    menu->addAction(localizedString("Frequently Asked &Questions"), &application,
                    &TDApplicationController::showHelpForFAQ);
    menu->addAction(localizedString("Overview for &New Users"), &application,
                    &TDApplicationController::helpOverviewForNewUsers);
    menu->addAction(localizedString("&Keyboard Shortcuts"), controller.window(), [bar, &controller] {
        (new KeySheet(keysOf(*bar, controller), controller.window()))->show();
    });
    menu->addSeparator();
    menu->addAction(localizedString("&Tidemark Home Page"), &application,
                    &TDApplicationController::helpVelkorTDMHomePage);
    menu->addAction(localizedString("&Velkor Home Page"), &application,
                    &TDApplicationController::helpVelkorHomePage);
    menu->addSeparator();
    QAction *about = menu->addAction(localizedString("&About Velkor Tidemark"), &application,
                                     &TDApplicationController::showAboutWindow);
    about->setMenuRole(QAction::AboutRole);
}

} // namespace

void buildMainMenu(TDMyDocumentController &controller, TDApplicationController &application)
{
    QMenuBar *bar = controller.window()->menuBar();
    addFileMenu(bar, controller.actions(), application);
    addEditMenu(bar, controller, application);
    addSearchMenu(bar, controller.actions());
    addResultsMenu(bar, controller);
    addWindowMenu(bar, controller, application);
    addHelpMenu(bar, controller, application);
}

} // namespace tidemark
