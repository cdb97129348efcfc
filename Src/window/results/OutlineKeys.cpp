#include "window/results/OutlineKeys.h"

#include <QAction>
#include <QKeyEvent>

#include <algorithm>

namespace tidemark {

namespace {

bool isArrow(int key)
{
    return key == Qt::Key_Down || key == Qt::Key_Up;
}

/// Either Return key.
bool isReturn(const QKeyEvent &event)
{
    return (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) &&
           !(event.modifiers() & (Qt::ControlModifier | Qt::ShiftModifier));
}

bool isCommand(int key)
{
    return key == Qt::Key_S || key == Qt::Key_X || key == Qt::Key_R || key == Qt::Key_L;
}

/// Alt gives mnemonics, and the other system key is the window manager's.
bool hasForeignModifier(Qt::KeyboardModifiers modifiers)
{
    return modifiers & (Qt::AltModifier | Qt::MetaModifier);
}

/// Those that make a difference to the key: Control before Shift for the arrows, and none for Delete.
Qt::KeyboardModifiers modifiersThatCount(const QKeyEvent &event)
{
    const bool hasControl = event.modifiers() & Qt::ControlModifier;
    if (hasControl && event.key() != Qt::Key_Delete)
        return Qt::ControlModifier;
    return isArrow(event.key()) ? event.modifiers() & Qt::ShiftModifier : Qt::KeyboardModifiers();
}

} // namespace

const QList<OutlineKeys::CursorKey> &OutlineKeys::cursorKeys()
{
    static const QList<CursorKey> keys = {{Qt::Key_Right, "Expand the file"},
                                          {Qt::Key_Left, "Collapse the file, or go from a line to it"},
                                          {Qt::Key_Home, "First row"},
                                          {Qt::Key_End, "Last row"},
                                          {Qt::Key_PageUp, "A page up"},
                                          {Qt::Key_PageDown, "A page down"},
                                          {Qt::Key_Space, "Select the row"},
                                          {Qt::CTRL | Qt::Key_Space, "Select the row, or not any more"},
                                          {Qt::CTRL | Qt::Key_A, "Select everything"}};
    return keys;
}

bool OutlineKeys::takes(const QKeyEvent &event)
{
    const int key = event.key();
    // Without Control it looks for a file, as every other letter but those of the commands.
    const bool isCopy = key == Qt::Key_C && event.modifiers() & Qt::ControlModifier;
    // With both it is a command of the window.
    constexpr Qt::KeyboardModifiers BOTH = Qt::ControlModifier | Qt::ShiftModifier;
    if ((isCommand(key) || isCopy) && (event.modifiers() & BOTH) == BOTH)
        return false;
    return (isCommand(key) || isArrow(key) || key == Qt::Key_Delete || isCopy || isReturn(event)) &&
           !hasForeignModifier(event.modifiers());
}

void OutlineKeys::trigger(const QKeyEvent &event) const
{
    const QKeyCombination key(modifiersThatCount(event),
                              isReturn(event) ? Qt::Key_Return : Qt::Key(event.key()));
    const auto command = std::find_if(_commands.begin(), _commands.end(),
                                      [key](const auto &entry) { return entry.first == key; });
    if (command != _commands.end())
        command->second->trigger();
}

} // namespace tidemark
