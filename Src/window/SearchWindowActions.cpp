#include "window/SearchWindowActions.h"

#include "foundation/LocalizedText.h"

#include <QAction>
#include <QWidget>

namespace tidemark {

namespace {

class ActionMaker
{
public:
    explicit ActionMaker(QWidget *window) : _window(window) {}

    QAction *make(const char *name, const char *text, const QList<QKeySequence> &shortcuts) const
    {
        auto *action = new QAction(localizedString(text), _window);
        action->setObjectName(QLatin1String(name));
        action->setShortcuts(shortcuts);
        // Held down, a command isn't to be given again and again.
        action->setAutoRepeat(false);
        _window->addAction(action);
        return action;
    }

    /// A command whose key belongs to the results alone; the menus show it.
    QAction *makeWithResultsKey(const char *name, const char *text, const QKeySequence &key) const
    {
        QAction *action = make(name, text, {});
        action->setText(action->text() + u'\t' + key.toString(QKeySequence::NativeText));
        return action;
    }

    QAction *makeRepeating(const char *name, const char *text, const QList<QKeySequence> &shortcuts) const
    {
        QAction *action = make(name, text, shortcuts);
        action->setAutoRepeat(true);
        return action;
    }

private:
    QWidget *_window;
};

void makeFormActions(SearchWindowActions &actions, const ActionMaker &maker)
{
    actions.addLocation = maker.make("addLocation", "&Add Files and Folders…", {Qt::CTRL | Qt::Key_O});
    actions.removeLocation = maker.make("removeLocation", "&Remove from List", {Qt::CTRL | Qt::Key_P});
    actions.close = maker.make("close", "&Close Window", {QKeySequence::Close});
    actions.startStopSearch =
        maker.make("startStopSearch", "Start Search", {Qt::CTRL | Qt::Key_Return, Qt::CTRL | Qt::Key_Enter});
    actions.stop = maker.make("stop", "Sto&p", {Qt::Key_Escape});
    actions.ignoreCase = maker.make("ignoreCase", "Ignore &Case", {Qt::CTRL | Qt::Key_C});
    actions.ignoreCase->setCheckable(true);
    actions.regularExpression =
        maker.make("regularExpression", "Regular E&xpression", {Qt::CTRL | Qt::Key_G});
    actions.regularExpression->setCheckable(true);
    actions.unicode = maker.make("unicode", "&Unicode", {Qt::CTRL | Qt::Key_U});
    actions.unicode->setCheckable(true);
    actions.wholeWords = maker.make("wholeWords", "&Whole Words", {Qt::CTRL | Qt::Key_D});
    actions.wholeWords->setCheckable(true);
    actions.fileTypes = maker.make("fileTypes", "File &Types…", {Qt::CTRL | Qt::Key_F});
    actions.otherPane = maker.make("otherPane", "S&witch between Form, Results and Context", {Qt::Key_F6});
}

void makeResultsActions(SearchWindowActions &actions, const ActionMaker &maker)
{
    actions.nextMatch = maker.makeRepeating("nextMatch", "&Next Match", {Qt::Key_F4});
    actions.previousMatch = maker.makeRepeating("previousMatch", "&Previous Match", {Qt::SHIFT | Qt::Key_F4});
    actions.extendToNextMatch =
        maker.makeWithResultsKey("extendToNextMatch", "E&xtend to Next Match", Qt::SHIFT | Qt::Key_Down);
    actions.extendToPreviousMatch = maker.makeWithResultsKey(
        "extendToPreviousMatch", "Extend &to Previous Match", Qt::SHIFT | Qt::Key_Up);
    actions.firstMatchInNextFile =
        maker.makeRepeating("firstMatchInNextFile", "First Match in Next &File", {Qt::CTRL | Qt::Key_Down});
    actions.firstMatchInPreviousFile = maker.makeRepeating(
        "firstMatchInPreviousFile", "First Match in Pre&vious File", {Qt::CTRL | Qt::Key_Up});
    actions.showFailures = maker.makeRepeating("showFailures", "Show Fai&lures", {});
    actions.showUnreadableFiles = maker.makeRepeating("showUnreadableFiles", "Show &Unreadable Files", {});
    actions.expandCollapseAll =
        maker.make("expandCollapseAll", "&Expand or Collapse All", {Qt::CTRL | Qt::Key_E});
    actions.removeSelected =
        maker.makeWithResultsKey("removeSelected", "Re&move Selected from Results", Qt::Key_Delete);
    actions.showReplacements =
        maker.make("showReplacements", "S&how Replacements", {Qt::CTRL | Qt::SHIFT | Qt::Key_R});
    actions.showReplacements->setCheckable(true);
    actions.largerText = maker.makeRepeating("largerText", "&Larger Text",
                                             {Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal});
    actions.smallerText = maker.makeRepeating("smallerText", "Smaller Te&xt", {Qt::CTRL | Qt::Key_Minus});
    actions.standardTextSize = maker.make("standardTextSize", "Standard Text Si&ze", {Qt::CTRL | Qt::Key_0});
    actions.showContext = maker.make("showContext", "Show Conte&xt", {Qt::CTRL | Qt::Key_I});
    actions.showContext->setCheckable(true);
    actions.showEncodings = maker.make("showEncodings", "Show Encodin&gs", {});
    actions.showEncodings->setCheckable(true);
    actions.filterResults =
        maker.make("filterResults", "Fi&lter Results", {Qt::CTRL | Qt::SHIFT | Qt::Key_F});
    actions.exportResults = maker.make("exportResults", "&Export Results…", {});
    actions.replace = maker.make("replace", "&Replace", {Qt::CTRL | Qt::Key_R});
    actions.replaceAndFind =
        maker.makeWithResultsKey("replaceAndFind", "Replace an&d Find", Qt::CTRL | Qt::Key_X);
    actions.history = maker.make("history", "&History of Replacements…", {});
    actions.deleteBackups = maker.make("deleteBackups", "Delete &Backups…", {});
    actions.undoReplacing = maker.make("undoReplacing", "&Undo Replacing", {QKeySequence::Undo});
    actions.redoReplacing = maker.make("redoReplacing", "&Redo Replacing", {QKeySequence::Redo});
    actions.replaceSelection = maker.make("replaceSelection", "Replace &Selection…", {Qt::CTRL | Qt::Key_S});
    actions.replaceAll = maker.make("replaceAll", "Replace &All…", {Qt::CTRL | Qt::Key_L});
}

} // namespace

SearchWindowActions SearchWindowActions::makeFor(QWidget *window)
{
    SearchWindowActions actions;
    const ActionMaker maker(window);
    makeFormActions(actions, maker);
    makeResultsActions(actions, maker);
    return actions;
}

} // namespace tidemark
