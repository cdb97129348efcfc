#include "app/EditMenu.h"

#include "app/TDApplicationController.h"
#include "foundation/LocalizedText.h"
#include "window/TDMyDocumentController.h"
#include "window/context/ContextPane.h"
#include "window/context/ContextView.h"
#include "window/results/ResultsPane.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QPointer>

#include <algorithm>
#include <array>
#include <functional>

namespace tidemark {

namespace {

struct EditCommand
{
    const char *text;
    QKeySequence::StandardKey key;
    void (*perform)(QLineEdit &field);
    bool (*isPossible)(const QLineEdit &field);
};

bool hasSelection(const QLineEdit &field)
{
    return field.hasSelectedText();
}

bool canPaste(const QLineEdit &)
{
    return QApplication::clipboard()->mimeData() != nullptr &&
           QApplication::clipboard()->mimeData()->hasText();
}

const std::array<EditCommand, 7> EDIT_COMMANDS = {{
    {"&Undo", QKeySequence::Undo, [](QLineEdit &field) { field.undo(); },
     [](const QLineEdit &field) { return field.isUndoAvailable(); }},
    {"&Redo", QKeySequence::Redo, [](QLineEdit &field) { field.redo(); },
     [](const QLineEdit &field) { return field.isRedoAvailable(); }},
    {"Cu&t", QKeySequence::Cut, [](QLineEdit &field) { field.cut(); }, hasSelection},
    {"&Copy", QKeySequence::Copy, [](QLineEdit &field) { field.copy(); }, hasSelection},
    {"&Paste", QKeySequence::Paste, [](QLineEdit &field) { field.paste(); }, canPaste},
    {"&Delete", QKeySequence::Delete, [](QLineEdit &field) { field.del(); }, hasSelection},
    {"Select &All", QKeySequence::SelectAll, [](QLineEdit &field) { field.selectAll(); },
     [](const QLineEdit &field) { return field.selectedText().size() < field.text().size(); }},
}};

/// Boxes with a field in them have the keyboard in its place.
QLineEdit *fieldOf(QWidget *widget)
{
    if (auto *field = qobject_cast<QLineEdit *>(widget))
        return field;
    const auto fields = widget != nullptr ? widget->findChildren<QLineEdit *>() : QList<QLineEdit *>();
    const auto found = std::find_if(fields.begin(), fields.end(), [widget](const QLineEdit *field) {
        return field->focusProxy() == widget;
    });
    return found != fields.end() ? *found : nullptr;
}

/// The field that has the keyboard, or had it until the menu bar took it.
class EditedField : public QObject
{
public:
    explicit EditedField(QMenuBar *bar) : QObject(bar)
    {
        connect(qApp, &QApplication::focusChanged, this, [this, bar](QWidget *, QWidget *now) {
            if (now != nullptr && now != bar && now->window() == bar->window())
                _lastFocused = now;
        });
    }

    QLineEdit *field() const { return fieldOf(_focused()); }
    bool isIn(const QWidget &widget) const { return _focused() == &widget; }

private:
    QWidget *_focused() const
    {
        QWidget *focused = QApplication::focusWidget();
        const bool isInMenu = focused == nullptr || focused == parent();
        return isInMenu ? _lastFocused.data() : focused;
    }

    QPointer<QWidget> _lastFocused;
};

QAction *addCommand(QMenu *menu, const EditCommand &command, const EditedField *edited)
{
    const QString key = QKeySequence(command.key).toString(QKeySequence::NativeText);
    QAction *action = menu->addAction(localizedString(command.text) + u'\t' + key);
    QObject::connect(action, &QAction::triggered, edited, [&command, edited] {
        if (QLineEdit *field = edited->field())
            command.perform(*field);
    });
    QObject::connect(menu, &QMenu::aboutToShow, action, [action, &command, edited] {
        const QLineEdit *field = edited->field();
        action->setEnabled(field != nullptr && command.isPossible(*field));
    });
    return action;
}

/// What the command does where this view has the keyboard.
void performIn(QWidget &view, QAction *command, const EditedField *edited, QMenu *menu,
               const std::function<void()> &perform, const std::function<bool()> &isPossible)
{
    QObject::connect(command, &QAction::triggered, &view, [&view, edited, perform] {
        if (edited->isIn(view))
            perform();
    });
    QObject::connect(menu, &QMenu::aboutToShow, &view, [&view, command, edited, isPossible] {
        if (edited->isIn(view))
            command->setEnabled(isPossible());
    });
}

/// Lines of the results, and of the file around a match, are copied and selected as text in a field is.
void performInViews(QAction *command, QKeySequence::StandardKey key, const EditedField *edited, QMenu *menu,
                    TDMyDocumentController &controller)
{
    TDSearchResultsOutlineView &results = controller.resultsPane().outlineView();
    ContextView &context = controller.contextPane().view();
    if (key == QKeySequence::Copy) {
        QAction *copyLines = controller.resultsPane().resultsActions().copyLineAction();
        performIn(
            results, command, edited, menu, [copyLines] { copyLines->trigger(); },
            [copyLines] { return copyLines->isEnabled(); });
        performIn(
            context, command, edited, menu, [&context] { context.copy(); },
            [&context] { return context.hasSelection(); });
    } else if (key == QKeySequence::SelectAll) {
        performIn(
            results, command, edited, menu, [&results] { results.selectAll(); },
            [&results] { return results.model()->rowCount() > 0; });
        performIn(
            context, command, edited, menu, [&context] { context.selectAll(); },
            [&context] { return context.shownLine() > 0; });
    }
}

void addPreferences(QMenu *menu, TDApplicationController &application)
{
    QAction *preferences = menu->addAction(localizedString("Pre&ferences…"), QKeySequence::Preferences,
                                           &application, &TDApplicationController::showPreferencePanel);
    // On desktops without a key of their own for it.
    if (preferences->shortcut().isEmpty())
        preferences->setShortcut(Qt::CTRL | Qt::Key_Comma);
    preferences->setMenuRole(QAction::PreferencesRole);
}

} // namespace

void addEditMenu(QMenuBar *bar, TDMyDocumentController &controller, TDApplicationController &application)
{
    QMenu *menu = bar->addMenu(localizedString("&Edit"));
    const auto *edited = new EditedField(bar);
    for (const EditCommand &command : EDIT_COMMANDS) {
        if (command.key == QKeySequence::Cut || command.key == QKeySequence::SelectAll)
            menu->addSeparator();
        QAction *action = addCommand(menu, command, edited);
        performInViews(action, command.key, edited, menu, controller);
    }
    menu->addSeparator();
    const SearchWindowActions &actions = controller.actions();
    menu->addActions({actions.undoReplacing, actions.redoReplacing});
    UndoCommands &undo = controller.resultsPane().undoCommands();
    QObject::connect(menu, &QMenu::aboutToShow, &undo, &UndoCommands::update);
    menu->addSeparator();
    addPreferences(menu, application);
}

} // namespace tidemark
