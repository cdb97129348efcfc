#pragma once

#include "foundation/FilePath.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tidemark {

/// Where an editor is to open a file.
struct EditorPlace
{
    FilePath path;
    qint64 line = 1;   ///< 1-based
    qint64 column = 1; ///< 1-based, in UTF-16 units
};

/// An editor that can open a file at a line.
struct Editor
{
    QString id; ///< as it is stored
    QString name;
    /// The program and its arguments; %f, %l and %c stand for file, line and column, %% for a percent sign.
    QString command;
};

/// The setting's value for the desktop's own choice, which opens a file at its beginning, and for the command
/// that a person typed.
inline const QString TD_EDITOR_OF_DESKTOP = QStringLiteral("desktop");
inline const QString TD_EDITOR_OF_ONES_OWN = QStringLiteral("custom");

/// Those whose program is installed, in a fixed order.
QList<Editor> installedEditors();

/// The command that the settings choose; nothing for the desktop's own choice, or where it isn't installed.
std::optional<QString> chosenEditorCommand();

/// What to call the program of that command; nothing where there is none.
std::optional<QString> chosenEditorName();

/// The words of a command with the place put in; no shell looks at them. Words are separated by blanks unless
/// they are in double quotes. Empty where the command is, or where the file's name isn't UTF-8 and so can't
/// be handed over.
QStringList editorArguments(const QString &command, const EditorPlace &place);

/// Starts it. Nothing, or a text for people that says what was run and why that failed.
std::optional<QString> openInEditor(const QString &command, const EditorPlace &place);

} // namespace tidemark
