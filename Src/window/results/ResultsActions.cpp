#include "window/results/ResultsActions.h"

#include "foundation/LocalizedText.h"
#include "window/Workspace.h"
#include "window/results/ResultsNavigation.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>

namespace tidemark {

ResultsActions::ResultsActions(ResultsNavigation &navigation, std::shared_ptr<Workspace> workspace,
                               QObject *parent)
    : QObject(parent), _navigation(navigation),
      _workspace(workspace ? std::move(workspace) : std::make_shared<DesktopWorkspace>()),
      _open(_addAction(localizedString("Open"), &ResultsActions::openInFinder)),
      _reveal(_addAction(localizedString("Reveal in Finder"), &ResultsActions::revealInFinder)),
      _copyLine(_addAction(localizedString("Copy Line"), &ResultsActions::copyLine)),
      _copyPath(_addAction(localizedString("Copy Path"), &ResultsActions::copyPath))
{
    _menu.insertSeparator(_copyLine);
    connect(&_navigation, &ResultsNavigation::selectionChanged, this,
            &ResultsActions::validateUserInterfaceItems);
    validateUserInterfaceItems();
}

QAction *ResultsActions::_addAction(const QString &text, void (ResultsActions::*command)())
{
    QAction *action = _menu.addAction(text);
    connect(action, &QAction::triggered, this, command);
    return action;
}

QMenu *ResultsActions::searchResultsOutLineViewMenu()
{
    validateUserInterfaceItems();
    return &_menu;
}

void ResultsActions::validateUserInterfaceItems()
{
    const auto item = _navigation.currentlySelectedFindResultItem();
    for (QAction *action : {_open, _reveal, _copyPath})
        action->setEnabled(item != nullptr);
    _copyLine->setEnabled(item && item->matchLine() != nullptr);
}

void ResultsActions::openInFinder()
{
    const FilePath path = _navigation.pathOfCurrentlySelectedItem();
    if (!path.isEmpty())
        _workspace->open(path);
}

void ResultsActions::revealInFinder()
{
    const FilePath path = _navigation.pathOfCurrentlySelectedItem();
    if (!path.isEmpty())
        _workspace->reveal(path);
}

void ResultsActions::copyLine()
{
    const QString lines = _navigation.selectedLines();
    if (!lines.isNull())
        QGuiApplication::clipboard()->setText(lines);
}

void ResultsActions::copyPath()
{
    const FilePath path = _navigation.pathOfCurrentlySelectedItem();
    if (!path.isEmpty())
        QGuiApplication::clipboard()->setText(path.displayText());
}

} // namespace tidemark
