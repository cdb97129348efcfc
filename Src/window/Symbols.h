#pragma once

#include <QIcon>

class QAbstractButton;
class QPalette;

namespace tidemark {

enum class Symbol { Add, Remove, Previous, Next, ExpandCollapse, Clear, Search, Folder };

/// The icon of the desktop's theme; drawn where the theme has none, or none that is seen on a button of the
/// palette. Main thread only.
QIcon symbolIcon(Symbol symbol, const QPalette &palette);
/// The drawn one in that colour.
QIcon drawnSymbol(Symbol symbol, const QColor &color);

/// Shows the symbol on the button instead of its text, also after the desktop changed its colours or icons.
/// The text stays the button's own.
void showSymbol(QAbstractButton *button, Symbol symbol);

} // namespace tidemark
