#pragma once

namespace tidemark {

class SearchWindow;

// How a search window was laid out last: its size and place, the divider, the columns. Kept in the settings
// for each screen by itself, since what fits one doesn't fit another.

/// Nothing for a screen that none was closed on. Never larger than the screen, nor beside it.
void restoreLayout(SearchWindow &window);
void saveLayout(const SearchWindow &window);

} // namespace tidemark
