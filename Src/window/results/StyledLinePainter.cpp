#include "window/results/StyledLinePainter.h"

#include "window/Colors.h"
#include "window/results/MatchLineDisplay.h"

#include <QGlyphRun>
#include <QPainter>
#include <QPalette>
#include <QRegion>
#include <QTextLine>

#include <algorithm>
#include <array>
#include <optional>

namespace tidemark {

QColor colorOf(const StyledColor &color)
{
    return QColor::fromRgbF(float(color.red), float(color.green), float(color.blue), float(color.alpha));
}

namespace {

constexpr qreal MARK_WIDTH = 3;

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
    if (directions == Directions::Mixed) {
        const QRect glyphs = rectOfGlyphs(line, start, end);
        // Blanks have none.
        if (!glyphs.isEmpty())
            return glyphs.translated(origin);
    }
    const int left = qRound(line.cursorToX(int(start)));
    const int right = qRound(line.cursorToX(int(end)));
    const QRectF lineRect = line.rect();
    return QRect(std::min(left, right), qRound(lineRect.top()), std::abs(right - left),
                 qRound(lineRect.height()))
        .translated(origin);
}

LineColors LineColors::on(const QPalette &palette)
{
    const QColor text = palette.color(QPalette::Text);
    if (isDark(palette))
        return {text, QColor(0xFF, 0x9A, 0x96), QColor(0x4D, 0x24, 0x26), QColor(0x9B, 0xE3, 0xAE),
                QColor(0x1F, 0x4A, 0x2B)};
    return {text, QColor(0xA4, 0x26, 0x2C), QColor(0xFB, 0xE3, 0xE4), QColor(0x14, 0x63, 0x2A),
            QColor(0xD9, 0xF2, 0xDF)};
}

std::pair<QColor, QColor> StyledLinePainter::_colorsOf(const StyledRun &run) const
{
    // The current match stays the current one.
    if (run.underline && run.background != TD_HIGHLIGHTED_MATCH_BACKGROUND)
        return {_colors.newText, _colors.newBackground};
    if (run.strikeOut && run.background == TD_MATCH_BACKGROUND)
        return {_colors.struckText, _colors.struckBackground};
    return {Qt::black, colorOf(*run.background)};
}

void StyledLinePainter::paint(const QTextLine &line, QPoint origin) const
{
    // A line with thousands of matches has few colours.
    std::array<std::pair<QColor, QRegion>, 3> marked = {
        {{Qt::black, {}}, {_colors.struckText, {}}, {_colors.newText, {}}}};
    QRegion &problem = marked[1].second;
    // The first run is the base colour of the whole text.
    for (qsizetype index = 1; index < _styled.runs.size(); ++index) {
        const StyledRun &run = _styled.runs[index];
        if (!run.background) {
            if (run.foreground == PROBLEM_COLOR)
                problem += rectOfRange(line, _directions, run.range, origin);
            continue;
        }
        const auto colors = _colorsOf(run);
        if (run.range.length == 0)
            _paintMark(line, run, origin);
        const QRect rect = rectOfRange(line, _directions, run.range, origin);
        _painter.fillRect(rect, colors.second);
        for (auto &[color, region] : marked) {
            if (color == colors.first)
                region += rect;
        }
    }
    QRegion base = line.rect().toAlignedRect().adjusted(-2, 0, 2, 0).translated(origin);
    for (const auto &[color, region] : marked)
        base -= region;
    _paintForeground(line, origin, _colors.text, base);
    for (const auto &[color, region] : marked)
        _paintForeground(line, origin, color, region);
    for (const StyledRun &run : _styled.runs)
        _paintLines(rectOfRange(line, _directions, run.range, origin), run);
}

/// Through the middle of what goes, and under what comes: nobody has to tell colours apart.
void StyledLinePainter::_paintLines(const QRect &rect, const StyledRun &run) const
{
    if (rect.isEmpty() || !run.background || (!run.strikeOut && !run.underline))
        return;
    const int y = run.strikeOut ? rect.center().y() + 1 : rect.bottom() - 1;
    _painter.fillRect(QRect(rect.left(), y, rect.width(), 1), _colorsOf(run).first);
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
