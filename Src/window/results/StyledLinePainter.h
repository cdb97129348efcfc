#pragma once

#include "text/StyledText.h"

#include <QColor>
#include <QList>
#include <QRegion>

#include <optional>
#include <utility>

class QPainter;
class QTextLine;

namespace tidemark {

/// Whether everything in a text runs from left to right.
enum class Directions { LeftToRight, Mixed };

/// Draws lines of a laid out text in the colours of its runs. The layout itself knows no colours, so that a
/// text with thousands of matches lays out as fast as one without.
class StyledLinePainter
{
public:
    /// `base` stands for the styled text's base colour, black or white; `prefix`, if given, for that of the
    /// line number, as the row is selected then. Both references must outlive the object.
    StyledLinePainter(QPainter &painter, const StyledText &styled, Directions directions, const QColor &base,
                      std::optional<QColor> prefix = {})
        : _painter(painter), _styled(styled), _directions(directions), _base(base), _prefix(std::move(prefix))
    {}

    /// `origin` is where the layout's own origin is drawn.
    void paint(const QTextLine &line, QPoint origin) const;

    static QRect rectOfRange(const QTextLine &line, Directions directions, TextRange range, QPoint origin);

private:
    QColor _colorOfOther(const StyledColor &color) const;
    void _paintLines(const QRect &rect, const StyledRun &run) const;
    void _paintMark(const QTextLine &line, const StyledRun &run, QPoint origin) const;
    void _paintForeground(const QTextLine &line, QPoint origin, const QColor &color,
                          const QRegion &region) const;

    QPainter &_painter;
    const StyledText &_styled;
    const Directions _directions;
    QColor _base;
    std::optional<QColor> _prefix;
};

QColor colorOf(const StyledColor &color);

} // namespace tidemark
