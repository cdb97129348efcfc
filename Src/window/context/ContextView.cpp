#include "window/context/ContextView.h"

#include "window/context/ContextColors.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <limits>

namespace tidemark {

namespace {

constexpr int USUAL_ROWS = 7;
constexpr int FEWEST_ROWS = 2;
/// Asked for beyond those in sight.
constexpr qint64 MORE_ROWS = 60;
constexpr int TEXT_MARGIN = 8; ///< pixels
constexpr int FEWEST_DIGITS = 4;
constexpr int EMPTY_MATCH_WIDTH = 3;
constexpr double LINE_SPACING = 1.25;
/// Layouts count in 1/64 of a pixel.
constexpr int LONGEST_LINE = std::numeric_limits<int>::max() / 512;

QString withoutNothing(const FileLine *line)
{
    return line != nullptr ? line->text : QString();
}

} // namespace

ContextView::ContextView(FileContext &context, QWidget *parent)
    : QAbstractScrollArea(parent), _context(context)
{
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setAutoFillBackground(true);
    connect(&_context, &FileContext::opened, this, &ContextView::_opened);
    connect(&_context, &FileContext::arrived, this, &ContextView::_arrived);
}

// -- What is shown

void ContextView::_opened()
{
    _widest = 0;
    _caret = _anchor = {std::max(qint64(1), _shownLine), _shownPosition};
    _isToBeRevealed = _shownLine > 0;
    _updateScrollBars();
    _arrived();
}

void ContextView::_arrived()
{
    _updateScrollBars();
    const bool isThere = _context.line(_shownLine) != nullptr;
    if (_isToBeRevealed && (isThere || _context.isLookedThrough())) {
        // Where in the line it is shows as soon as that is there.
        _isToBeRevealed = !isThere && _shownLine <= _context.lineCount();
        _reveal({_shownLine, _shownPosition}, true);
    }
    _askForLines();
    viewport()->update();
}

void ContextView::_askForLines()
{
    const qint64 first = _isToBeRevealed ? _shownLine - _fullRows() / 2 : _firstLine();
    const qint64 count = _fullRows() + 1;
    for (qint64 number = std::max(qint64(1), first); number < first + count; ++number) {
        const bool exists = number <= _context.lineCount() || !_context.isLookedThrough();
        if (exists && _context.line(number) == nullptr) {
            const qint64 from = std::max(qint64(1), first - MORE_ROWS);
            _context.want(from, first + count + MORE_ROWS - from);
            return;
        }
    }
}

void ContextView::showLine(qint64 number, qsizetype position)
{
    _shownLine = number;
    _shownPosition = position;
    _caret = _anchor = {std::max(qint64(1), number), position};
    _isToBeRevealed = number > 0;
    _arrived();
}

void ContextView::_reveal(Place place, bool centered)
{
    const int rows = std::max(1, _fullRows());
    const qint64 first = _firstLine();
    const bool isInSight = place.line >= first && place.line < first + rows;
    if (centered && (!isInSight || place.line == first || place.line + 1 == first + rows))
        verticalScrollBar()->setValue(int(place.line - 1 - rows / 2));
    else if (place.line < first)
        verticalScrollBar()->setValue(int(place.line - 1));
    else if (place.line >= first + rows)
        verticalScrollBar()->setValue(int(place.line - rows));
    const std::unique_ptr<Row> row = _row(place.line);
    if (!row)
        return;
    _updateScrollBars();
    const int x = qRound(row->text().cursorToX(int(row->line.shownAt(place.position))));
    const int width = viewport()->width() - _gutter() - 2 * TEXT_MARGIN;
    const int left = horizontalScrollBar()->value();
    if (x < left || x > left + width)
        horizontalScrollBar()->setValue(x < width ? 0 : x - width / 2);
}

QString ContextView::spokenText() const
{
    return withoutNothing(_context.line(_caret.line));
}

// -- Sizes

QSize ContextView::sizeHint() const
{
    return {_gutter() + fontMetrics().averageCharWidth() * 40, USUAL_ROWS * _rowHeight() + 2 * frameWidth()};
}

QSize ContextView::minimumSizeHint() const
{
    return {_gutter() + fontMetrics().averageCharWidth() * 8, FEWEST_ROWS * _rowHeight() + 2 * frameWidth()};
}

qint64 ContextView::_firstLine() const
{
    return verticalScrollBar()->value() + 1;
}

int ContextView::_rowHeight() const
{
    return qRound(fontMetrics().height() * LINE_SPACING);
}

int ContextView::_fullRows() const
{
    return viewport()->height() / _rowHeight();
}

int ContextView::_gutter() const
{
    const qsizetype digits = QString::number(std::max(_context.lineCount(), _shownLine)).size();
    return 2 * TEXT_MARGIN +
           fontMetrics().horizontalAdvance(u'0') * int(std::max(qsizetype(FEWEST_DIGITS), digits));
}

void ContextView::_updateScrollBars()
{
    const qint64 rows = std::max(1, _fullRows());
    const qint64 last = std::clamp(std::max(_context.lineCount(), _shownLine) - rows, qint64(0),
                                   qint64(std::numeric_limits<int>::max() / 2));
    verticalScrollBar()->setRange(0, int(last));
    verticalScrollBar()->setPageStep(int(rows));
    const int width = viewport()->width() - _gutter() - 2 * TEXT_MARGIN;
    horizontalScrollBar()->setRange(0, std::max(0, _widest - width));
    horizontalScrollBar()->setPageStep(std::max(1, width));
    horizontalScrollBar()->setSingleStep(fontMetrics().averageCharWidth() * 4);
}

void ContextView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    _arrived();
}

void ContextView::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        _widest = 0;
        _arrived();
    }
}

void ContextView::scrollContentsBy(int /*dx*/, int /*dy*/)
{
    _askForLines();
    viewport()->update();
}

// -- Painting

/// Null for a line that hasn't arrived.
std::unique_ptr<ContextView::Row> ContextView::_row(qint64 number) const
{
    const FileLine *line = _context.line(number);
    if (line == nullptr)
        return nullptr;
    const auto matches = _matches ? _matches(number, line->text) : QList<ContextMatch>();
    auto row = std::make_unique<Row>(
        ContextLine(line->text, line->isWhole, matches, number == _shownLine ? _shownPosition : 0));
    row->layout.setFont(font());
    row->layout.setText(row->line.shown());
    const ContextColors colors(palette());
    QList<QTextLayout::FormatRange> formats;
    for (const ContextLine::Marked &marked : row->line.marked())
        formats << QTextLayout::FormatRange{int(marked.shown.location), int(marked.shown.length),
                                            colors.formatOf(marked)};
    row->layout.setFormats(formats);
    // Each line runs as its first letters do, as in the results, and begins at the left nevertheless.
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::NoWrap);
    row->layout.setTextOption(option);
    row->layout.beginLayout();
    QTextLine text = row->layout.createLine();
    text.setLineWidth(LONGEST_LINE);
    row->layout.endLayout();
    _widest = std::max(_widest, qCeil(text.naturalTextWidth()) + TEXT_MARGIN);
    return row;
}

void ContextView::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    const int height = _rowHeight();
    const int widest = _widest;
    const qint64 first = _firstLine();
    const int last = event->rect().bottom() / height;
    for (int index = event->rect().top() / height; index <= last; ++index) {
        if (first + index <= std::max(_context.lineCount(), _shownLine))
            _paintRow(painter, first + index, {0, index * height, viewport()->width(), height});
    }
    // A longer line came into sight.
    if (_widest > widest)
        QMetaObject::invokeMethod(this, &ContextView::_updateScrollBars, Qt::QueuedConnection);
}

void ContextView::_paintRow(QPainter &painter, qint64 number, const QRect &rect) const
{
    const ContextColors colors(palette());
    const bool isShown = number == _shownLine;
    if (isShown)
        painter.fillRect(rect, colors.shownLine());
    painter.setFont(font());
    painter.setPen(isShown ? colors.text() : colors.dimmed());
    const QRect gutter(0, rect.top(), _gutter() - TEXT_MARGIN, rect.height());
    painter.drawText(gutter, Qt::AlignRight | Qt::AlignVCenter, QString::number(number));
    const std::unique_ptr<Row> row = _row(number);
    if (!row)
        return;
    painter.save();
    painter.setClipRect(rect.adjusted(_gutter(), 0, 0, 0));
    const QPointF origin(_gutter() - horizontalScrollBar()->value(),
                         rect.top() + (rect.height() - row->text().height()) / 2);
    row->layout.draw(&painter, origin, _selection(*row, number));
    _paintEmptyMatches(painter, *row, origin);
    if (hasFocus() && number == _caret.line) {
        painter.setPen(colors.text());
        row->layout.drawCursor(&painter, origin, int(row->line.shownAt(_caret.position)));
    }
    painter.restore();
}

QList<QTextLayout::FormatRange> ContextView::_selection(const Row &row, qint64 number) const
{
    const Place from = std::min(_caret, _anchor);
    const Place to = std::max(_caret, _anchor);
    if (from == to || number < from.line || number > to.line)
        return {};
    const auto start = int(number == from.line ? row.line.shownAt(from.position) : 0);
    const auto end = int(number == to.line ? row.line.shownAt(to.position) : row.line.shown().size());
    return {{start, end - start, ContextColors(palette()).selection(hasFocus())}};
}

void ContextView::_paintEmptyMatches(QPainter &painter, const Row &row, QPointF origin) const
{
    const ContextColors colors(palette());
    for (const ContextLine::Marked &marked : row.line.marked()) {
        if (marked.shown.length > 0)
            continue;
        const qreal x = origin.x() + row.text().cursorToX(int(marked.shown.location));
        painter.fillRect(
            QRectF(x - EMPTY_MATCH_WIDTH / 2.0, origin.y(), EMPTY_MATCH_WIDTH, row.text().height()),
            colors.formatOf(marked).background());
    }
}

// -- Caret and selection

void ContextView::_setCaret(Place place, bool extends)
{
    place.line = std::clamp(place.line, qint64(1), std::max(qint64(1), _context.lineCount()));
    _caret = place;
    if (!extends)
        _anchor = place;
    viewport()->update();
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent event(this, spokenText());
    QAccessible::updateAccessibility(&event);
}

void ContextView::selectAll()
{
    const qint64 last = std::max(qint64(1), _context.lineCount());
    _anchor = {1, 0};
    _caret = {last, std::numeric_limits<qsizetype>::max()};
    viewport()->update();
}

void ContextView::copy()
{
    if (!hasSelection())
        return;
    const Place from = std::min(_caret, _anchor);
    const Place to = std::max(_caret, _anchor);
    _context.fetch(from.line, to.line, [this, from, to](const std::optional<QStringList> &lines) {
        if (!lines || lines->isEmpty()) {
            Q_EMIT tooLongToCopy();
            return;
        }
        QStringList texts = *lines;
        const bool endsInLast = texts.size() == to.line - from.line + 1;
        if (endsInLast && to.position < texts.last().size())
            texts.last().truncate(to.position);
        texts.first() = texts.first().mid(from.position);
        QGuiApplication::clipboard()->setText(texts.join(u'\n'));
        Q_EMIT copied();
    });
}

ContextView::Place ContextView::_placeAt(QPoint point) const
{
    const int index = point.y() < 0 ? -1 : point.y() / _rowHeight();
    const qint64 number =
        std::clamp(_firstLine() + index, qint64(1), std::max(qint64(1), _context.lineCount()));
    const std::unique_ptr<Row> row = _row(number);
    if (!row)
        return {number, 0};
    const int x = point.x() - _gutter() + horizontalScrollBar()->value();
    return {number, row->line.positionAt(row->text().xToCursor(x))};
}

void ContextView::_selectWord(Place place)
{
    const QString text = withoutNothing(_context.line(place.line));
    QTextBoundaryFinder words(QTextBoundaryFinder::Word, text);
    words.setPosition(std::min(place.position, text.size()));
    const qsizetype start = words.isAtBoundary() && place.position < text.size()
                                ? place.position
                                : std::max(qsizetype(0), words.toPreviousBoundary());
    words.setPosition(start);
    const qsizetype end = words.toNextBoundary();
    _setCaret({place.line, start}, false);
    _setCaret({place.line, end < 0 ? text.size() : end}, true);
}

void ContextView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        _setCaret(_placeAt(event->position().toPoint()), event->modifiers() & Qt::ShiftModifier);
}

void ContextView::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;
    const Place place = _placeAt(event->position().toPoint());
    _setCaret(place, true);
    _reveal(place, false);
}

void ContextView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        _selectWord(_placeAt(event->position().toPoint()));
}

// -- Keys

bool ContextView::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto &key = static_cast<QKeyEvent &>(*event);
        // These come before shortcuts of the window that happen to be the same.
        if (key.matches(QKeySequence::Copy) || key.matches(QKeySequence::SelectAll)) {
            event->accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

void ContextView::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->matches(QKeySequence::Copy))
        copy();
    else if (event->matches(QKeySequence::SelectAll))
        selectAll();
    else if (isReturn && !(event->modifiers() & ~Qt::KeypadModifier))
        Q_EMIT returnPressed();
    else if (!_moveCaret(*event))
        // What the base does with keys is done here.
        return event->ignore();
    event->accept();
}

bool ContextView::_moveCaret(const QKeyEvent &event)
{
    constexpr int MOVING[] = {Qt::Key_Up,     Qt::Key_Down,     Qt::Key_Left, Qt::Key_Right,
                              Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End};
    const bool moves = std::find(std::begin(MOVING), std::end(MOVING), event.key()) != std::end(MOVING);
    if (!moves || event.modifiers() & (Qt::AltModifier | Qt::MetaModifier))
        return false;
    _setCaret(_placeAfter(event.key(), event.modifiers() & Qt::ControlModifier),
              event.modifiers() & Qt::ShiftModifier);
    _reveal(_caret, false);
    return true;
}

ContextView::Place ContextView::_placeAfter(int key, bool withControl) const
{
    const qint64 last = std::max(qint64(1), _context.lineCount());
    const qint64 page = std::max(1, _fullRows() - 1);
    const QString text = withoutNothing(_context.line(_caret.line));
    const qsizetype position = std::min(_caret.position, text.size());
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    characters.setPosition(position);
    switch (key) {
    case Qt::Key_Up:
        return {_caret.line - 1, _caret.position};
    case Qt::Key_Down:
        return {_caret.line + 1, _caret.position};
    case Qt::Key_PageUp:
        return {_caret.line - page, _caret.position};
    case Qt::Key_PageDown:
        return {_caret.line + page, _caret.position};
    case Qt::Key_Home:
        return {withControl ? 1 : _caret.line, 0};
    case Qt::Key_End:
        return withControl ? Place{last, 0} : Place{_caret.line, text.size()};
    case Qt::Key_Left:
        return {_caret.line, std::max(qsizetype(0), characters.toPreviousBoundary())};
    default:
        return {_caret.line, position < text.size() ? characters.toNextBoundary() : position};
    }
}

void ContextView::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void ContextView::focusOutEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

} // namespace tidemark
