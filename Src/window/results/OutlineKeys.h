#pragma once

#include <QHash>
#include <QKeyCombination>

#include <optional>

class QAction;
class QKeyEvent;

namespace tidemark {

/// The keys that belong to the results while they have the keyboard, and the commands they trigger.
class OutlineKeys
{
public:
    /// The action isn't owned. A key whose action is disabled or missing does nothing.
    void set(QKeyCombination key, QAction *action) { _actions.insert(key.toCombined(), action); }

    /// Whether the results take the key, with whatever modifiers, before any shortcut of the window.
    static bool takes(const QKeyEvent &event);
    void trigger(const QKeyEvent &event) const;

private:
    QHash<int, QAction *> _actions;
};

} // namespace tidemark
