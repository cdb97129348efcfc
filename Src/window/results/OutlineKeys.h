#pragma once

#include <QKeyCombination>
#include <QList>

#include <utility>

class QAction;
class QKeyEvent;

namespace tidemark {

/// The keys that belong to the results while they have the keyboard, and the commands they trigger.
class OutlineKeys
{
public:
    /// The action isn't owned. A key whose action is disabled or missing does nothing.
    void set(QKeyCombination key, QAction *action) { _commands.emplace_back(key, action); }
    /// In the order in which they were set.
    const QList<std::pair<QKeyCombination, QAction *>> &commands() const { return _commands; }

    /// Those that move among the rows, and what they do.
    struct CursorKey
    {
        QKeyCombination key;
        const char *text;
    };
    static const QList<CursorKey> &cursorKeys();

    /// Whether the results take the key, with whatever modifiers, before any shortcut of the window.
    static bool takes(const QKeyEvent &event);
    void trigger(const QKeyEvent &event) const;

private:
    QList<std::pair<QKeyCombination, QAction *>> _commands;
};

} // namespace tidemark
