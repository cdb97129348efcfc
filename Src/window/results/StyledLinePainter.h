#pragma once

#include "text/StyledText.h"

#include <QColor>
#include <QPoint>
#include <QRect>

class QPainter;
class QPalette;
class QRegion;
class QTextLine;

namespace tidemark {

/// Whether everything in a text runs from left to right.
enum class Directions { LeftToRight, Mixed };

/// What stands for the colours of a styled text, on light and on dark.
struct LineColors
{
    QColor text;       ///< beside the matches
    QColor struckText; ///< also of a problem
    QColor struckBackground;
    QColor newText;
    QColor newBackground;

    /// On the palette's base.
    static LineColors on(const QPalette &palette);
};

/// Draws lines of a laid out text in the colours of its runs. The layout itself knows no colours, so that a
/// text with thousands of matches lays out as fast as one without.
class StyledLinePainter
{
public:
    /// Both references must outlive the object.
    StyledLinePainter(QPainter &painter, const StyledText &styled, Directions directions, LineColors colors)
        : _painter(painter), _styled(styled), _directions(directions), _colors(colors)
    {}

    /// `origin` is where the layout's own origin is drawn.
    void paint(const QTextLine &line, QPoint origin) const;

    static QRect rectOfRange(const QTextLine &line, Directions directions, TextRange range, QPoint origin);

private:
    /// Text and background.
    std::pair<QColor, QColor> _colorsOf(const StyledRun &run) const;
    void _paintLines(const QRect &rect, const StyledRun &run) const;
    void _paintMark(const QTextLine &line, const StyledRun &run, QPoint origin) const;
    void _paintForeground(const QTextLine &line, QPoint origin, const QColor &color,
                          const QRegion &region) const;

    QPainter &_painter;
    const StyledText &_styled;
    const Directions _directions;
    const LineColors _colors;
};

QColor colorOf(const StyledColor &color);

} // namespace tidemark
