#include "window/results/StyledLinePainter.h"

#include "window/results/MatchLineDisplay.h"

#include <QGlyphRun>
#include <QPainter>
#include <QTextLine>

#include <algorithm>

namespace tidemark {

QColor colorOf(const StyledColor &color)
{
    return QColor::fromRgbF(float(color.red), float(color.green), float(color.blue), float(color.alpha));
}

namespace {

constexpr qreal MARK_WIDTH = 3;
constexpr QColor PROBLEM_ON_DARK = QColor(255, 154, 150);

/// Where characters of both directions meet a cursor has two places, so only the glyphs tell.
QRect rectOfGlyphs(const QTextLine &line, qint64 start, qint64 end)
{
    QRectF rect;
    const QList<QGlyphRun> runs = line.glyphRuns(int(start), int(end - start));
    for (const QGlyphRun &run : runs)
        rect |= run.boundingRect();
    const QRectF lineRect = line.rect();
    return QRectF(rect.left(), lineRect.top(), rect.width(), lineRect.height()).toRect();
}

} // namespace

QRect StyledLinePainter::rectOfRange(const QTextLine &line, Directions directions, TextRange range,
                                     QPoint origin)
{
    const qint64 start = std::max(range.location, qint64(line.textStart()));
    const qint64 end = std::min(range.end(), qint64(line.textStart()) + line.textLength());
    if (start >= end)
        return {};
    if (directions == Directions::Mixed)
        return rectOfGlyphs(line, start, end).translated(origin);
    const int left = qRound(line.cursorToX(int(start)));
    const int right = qRound(line.cursorToX(int(end)));
    const QRectF lineRect = line.rect();
    return QRect(std::min(left, right), qRound(lineRect.top()), std::abs(right - left),
                 qRound(lineRect.height()))
        .translated(origin);
}

void StyledLinePainter::paint(const QTextLine &line, QPoint origin) const
{
    QRegion baseRegion = line.rect().toAlignedRect().adjusted(-2, 0, 2, 0).translated(origin);
    QRegion matchRegion;
    QRegion otherRegion;
    QList<std::pair<StyledColor, QRect>> others;
    // The first run is the base colour of the whole text.
    for (qsizetype index = 1; index < _styled.runs.size(); ++index) {
        const StyledRun &run = _styled.runs[index];
        const QRect rect = rectOfRange(line, _directions, run.range, origin);
        if (run.background && run.range.length == 0)
            _paintMark(line, run, origin);
        if (rect.isEmpty())
            continue;
        if (run.background) {
            _painter.fillRect(rect, colorOf(*run.background));
            matchRegion += rect;
        } else if (run.foreground) {
            others.append({*run.foreground, rect});
            otherRegion += rect;
        }
    }
    // Where a highlight reaches into the prefix, the prefix keeps its own colour.
    matchRegion -= otherRegion;
    baseRegion -= otherRegion;
    _paintForeground(line, origin, _base, _base == QColor(Qt::black) ? baseRegion : baseRegion - matchRegion);
    if (_base != QColor(Qt::black))
        _paintForeground(line, origin, Qt::black, matchRegion);
    for (const auto &[color, rect] : std::as_const(others))
        _paintForeground(line, origin, _colorOfOther(color), rect);
    for (const StyledRun &run : _styled.runs)
        _paintLines(rectOfRange(line, _directions, run.range, origin), run);
}

QColor StyledLinePainter::_colorOfOther(const StyledColor &color) const
{
    if (color != PROBLEM_COLOR)
        return _prefix.value_or(colorOf(color));
    if (_prefix)
        return _base;
    return _base.lightnessF() > 0.5F ? PROBLEM_ON_DARK : colorOf(color);
}

/// Through the middle of what goes, and under what comes: nobody has to tell colours apart.
void StyledLinePainter::_paintLines(const QRect &rect, const StyledRun &run) const
{
    if (rect.isEmpty() || !run.background || (!run.strikeOut && !run.underline))
        return;
    const int y = run.strikeOut ? rect.center().y() : rect.bottom();
    _painter.fillRect(QRect(rect.left(), y, rect.width(), 1), Qt::black);
}

/// An empty match stands between two characters.
void StyledLinePainter::_paintMark(const QTextLine &line, const StyledRun &run, QPoint origin) const
{
    const qint64 end = line.textStart() + line.textLength();
    const bool isLast = end == _styled.text.size();
    if (run.range.location < line.textStart() || run.range.location > end ||
        (run.range.location == end && !isLast))
        return;
    const QRectF lineRect = line.rect();
    const qreal x = line.cursorToX(int(run.range.location));
    _painter.fillRect(
        QRectF(x - MARK_WIDTH / 2, lineRect.top(), MARK_WIDTH, lineRect.height()).translated(origin),
        colorOf(*run.background));
}

void StyledLinePainter::_paintForeground(const QTextLine &line, QPoint origin, const QColor &color,
                                         const QRegion &region) const
{
    if (region.isEmpty())
        return;
    _painter.save();
    _painter.setClipRegion(region, Qt::IntersectClip);
    _painter.setPen(color);
    line.draw(&_painter, origin);
    _painter.restore();
}

} // namespace tidemark
