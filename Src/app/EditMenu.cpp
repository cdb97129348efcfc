#include "app/EditMenu.h"

#include "app/TDApplicationController.h"
#include "foundation/LocalizedText.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>

#include <array>

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
     [](const QLineEdit &field) { return !field.text().isEmpty(); }},
}};

QLineEdit *focusedField()
{
    return qobject_cast<QLineEdit *>(QApplication::focusWidget());
}

void addCommand(QMenu *menu, const EditCommand &command)
{
    const QString key = QKeySequence(command.key).toString(QKeySequence::NativeText);
    QAction *action = menu->addAction(localizedString(command.text) + u'\t' + key);
    QObject::connect(action, &QAction::triggered, action, [&command] {
        if (QLineEdit *field = focusedField())
            command.perform(*field);
    });
    QObject::connect(menu, &QMenu::aboutToShow, action, [action, &command] {
        const QLineEdit *field = focusedField();
        action->setEnabled(field != nullptr && command.isPossible(*field));
    });
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

void addEditMenu(QMenuBar *bar, TDApplicationController &application)
{
    QMenu *menu = bar->addMenu(localizedString("&Edit"));
    for (const EditCommand &command : EDIT_COMMANDS) {
        if (command.key == QKeySequence::Cut || command.key == QKeySequence::SelectAll)
            menu->addSeparator();
        addCommand(menu, command);
    }
    menu->addSeparator();
    addPreferences(menu, application);
}

} // namespace tidemark
