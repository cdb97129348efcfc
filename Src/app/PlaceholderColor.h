#pragma once

namespace tidemark {

/// From now on, whatever colours the desktop changes to, what fields say while they are empty can be read:
/// some desktops leave out the colour for it, which is then that of another palette.
void keepPlaceholdersReadable();

} // namespace tidemark
