#pragma once

#include "window/ApplicationDelegate.h"

namespace tidemark::test {

/// Gives each shortcut of the window at each place that can have the keyboard, with the keys as the platform
/// at hand has them.
void expectEveryShortcutEverywhere(ApplicationDelegate &application);

} // namespace tidemark::test
