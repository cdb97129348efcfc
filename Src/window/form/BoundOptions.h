#pragma once

#include <QString>

class QAbstractButton;
class QAction;

namespace tidemark {

class UserDefaults;

/// Ties a tick to a boolean setting, both ways: it shows the setting from now on, also when another window
/// changes it, and ticking stores it. The settings must outlive the control.
void bindOption(QAbstractButton *button, UserDefaults &settings, const QString &key);
void bindOption(QAction *action, UserDefaults &settings, const QString &key);

} // namespace tidemark
