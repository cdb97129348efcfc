#include "session/Editors.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"

#include <QProcess>
#include <QStandardPaths>

#include <array>

namespace tidemark {

namespace {

struct KnownEditor
{
    const char *program;
    const char *name;
    const char *arguments;
};

constexpr std::array<KnownEditor, 17> KNOWN_EDITORS = {{
    {"kate", "Kate", "--line %l --column %c %f"},
    {"kwrite", "KWrite", "--line %l --column %c %f"},
    {"code", "VS Code", "--goto %f:%l:%c"},
    {"codium", "VSCodium", "--goto %f:%l:%c"},
    {"gnome-text-editor", "GNOME Text Editor", "%f +%l:%c"},
    {"gedit", "Gedit", "%f +%l:%c"},
    {"mousepad", "Mousepad", "--line=%l --column=%c %f"},
    {"emacs", "Emacs", "+%l:%c %f"},
    {"gvim", "GVim", "+%l %f"},
    {"subl", "Sublime Text", "%f:%l:%c"},
    {"idea", "IntelliJ IDEA", "--line %l --column %c %f"},
    {"clion", "CLion", "--line %l --column %c %f"},
    {"pycharm", "PyCharm", "--line %l --column %c %f"},
    {"webstorm", "WebStorm", "--line %l --column %c %f"},
    {"qtcreator", "Qt Creator", "-client %f:%l:%c"},
    {"geany", "Geany", "--line %l --column %c %f"},
    {"vim", "Vim", "+%l %f"},
}};

/// It needs a terminal around it.
constexpr QLatin1String TERMINAL_EDITOR("vim");
const QString TERMINAL = QStringLiteral("x-terminal-emulator");

bool isInstalled(const QString &program)
{
    return !QStandardPaths::findExecutable(program).isEmpty();
}

QString wordWith(const QString &word, const EditorPlace &place)
{
    QString filled;
    for (qsizetype index = 0; index < word.size(); ++index) {
        const QChar next = word[index] == u'%' && index + 1 < word.size() ? word[index + 1] : QChar();
        if (next == u'f')
            filled += place.path.displayText();
        else if (next == u'l')
            filled += QString::number(place.line);
        else if (next == u'c')
            filled += QString::number(place.column);
        else if (next == u'%')
            filled += u'%';
        else
            filled += word[index];
        if (next == u'f' || next == u'l' || next == u'c' || next == u'%')
            ++index;
    }
    return filled;
}

bool canBeHandedOver(const FilePath &path)
{
    return path.displayText().toUtf8() == path.bytes();
}

/// Nothing where it isn't installed.
std::optional<Editor> installed(const KnownEditor &known)
{
    const QString program = QString::fromLatin1(known.program);
    const bool isInTerminal = program == TERMINAL_EDITOR;
    if (!isInstalled(program) || (isInTerminal && !isInstalled(TERMINAL)))
        return {};
    const QString command = program + u' ' + QString::fromLatin1(known.arguments);
    return Editor{program, QString::fromLatin1(known.name),
                  isInTerminal ? TERMINAL + QStringLiteral(" -e ") + command : command};
}

/// Looks for no other, since this is asked at each step through the results.
std::optional<Editor> chosenKnownEditor()
{
    const QString id = UserDefaults::standard().stringForKey(TD_USER_DEFAULTS_NAME_EDITOR);
    for (const KnownEditor &known : KNOWN_EDITORS) {
        if (id == QLatin1String(known.program))
            return installed(known);
    }
    return {};
}

} // namespace

QList<Editor> installedEditors()
{
    QList<Editor> editors;
    for (const KnownEditor &known : KNOWN_EDITORS) {
        if (const std::optional<Editor> editor = installed(known))
            editors << *editor;
    }
    return editors;
}

std::optional<QString> chosenEditorCommand()
{
    const UserDefaults &settings = UserDefaults::standard();
    if (settings.stringForKey(TD_USER_DEFAULTS_NAME_EDITOR) == TD_EDITOR_OF_ONES_OWN) {
        const QString command = settings.stringForKey(TD_USER_DEFAULTS_NAME_EDITOR_COMMAND).trimmed();
        return command.isEmpty() ? std::nullopt : std::optional(command);
    }
    const std::optional<Editor> editor = chosenKnownEditor();
    return editor ? std::optional(editor->command) : std::nullopt;
}

std::optional<QString> chosenEditorName()
{
    if (const std::optional<Editor> editor = chosenKnownEditor())
        return editor->name;
    const std::optional<QString> command = chosenEditorCommand();
    return command ? std::optional(QProcess::splitCommand(*command).value(0).section(u'/', -1))
                   : std::nullopt;
}

QStringList editorArguments(const QString &command, const EditorPlace &place)
{
    if (!canBeHandedOver(place.path))
        return {};
    QStringList words = QProcess::splitCommand(command);
    for (QString &word : words)
        word = wordWith(word, place);
    return words;
}

std::optional<QString> openInEditor(const QString &command, const EditorPlace &place)
{
    QStringList words = editorArguments(command, place);
    if (words.isEmpty())
        return localizedString(
            "The name of the file can't be handed over to another program, or no command is set.");
    const QString shown = words.join(u' ');
    const QString program = words.takeFirst();
    if (QProcess::startDetached(program, words))
        return {};
    return formatted(
        localizedString("The editor could not be started with “%@”. Choose another one in Preferences."),
        {shown});
}

} // namespace tidemark
