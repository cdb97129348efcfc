#pragma once

#include <QColor>

class QPalette;

namespace tidemark {

/// The least that a text differs from what is behind it, as a ratio of luminances.
inline constexpr double READABLE_CONTRAST = 4.5;

/// From 1 for the same colour to 21 for black on white. Opacity doesn't count.
double contrastRatio(const QColor &one, const QColor &other);
/// `share` of the first over the second, from 0 to 1.
QColor mixed(const QColor &over, const QColor &under, double share);
/// The text's colour, as faint on the background as it can be read.
QColor secondaryColor(const QColor &text, const QColor &background);
/// Whether texts are light on dark.
bool isDark(const QPalette &palette);
/// For what went wrong, on the palette's base; the text's where red can't be read on that.
QColor errorColor(const QPalette &palette);
/// For what a click leads somewhere, on a background; the text's where blue can't be read on that.
QColor linkColor(const QColor &text, const QColor &background);

} // namespace tidemark
