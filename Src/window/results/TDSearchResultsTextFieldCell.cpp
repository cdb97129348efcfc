#include "window/results/TDSearchResultsTextFieldCell.h"

#include "foundation/LocalizedText.h"
#include "matching/TDFindResultItem.h"
#include "session/ReplacementPreview.h"
#include "session/UnreadableFiles.h"
#include "window/Colors.h"
#include "window/results/ResultsFont.h"

#include <QFontInfo>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace tidemark {

namespace {

constexpr int MOST_LAYOUTS = 256;
constexpr double ROW_HEIGHT_OF_TEXT = 1.5;
constexpr int LEAST_ROOM_AROUND_TEXT = 2;
/// Columns between two tab stops.
constexpr int TAB_WIDTH = 4;
constexpr int GUTTER_GAP = 12;
constexpr int LINK_MARGIN = 8;

const TDFindResultItem &itemOf(const QModelIndex &index)
{
    return *static_cast<const TDFindResultItem *>(index.internalPointer());
}

QString errorText(const TDFindResultItem &item)
{
    return item.displayError().text.simplified();
}

QString readAsText()
{
    return localizedString("Read As…");
}

Directions directionsOf(QStringView text)
{
    const bool isMixed = std::any_of(text.begin(), text.end(), [](QChar unit) {
        const QChar::Direction direction = unit.direction();
        // Some that run from right to left take two units.
        return direction == QChar::DirR || direction == QChar::DirAL || unit.isSurrogate();
    });
    return isMixed ? Directions::Mixed : Directions::LeftToRight;
}

/// A line runs as its first letters do, and begins at the left nevertheless: beside its number.
QTextOption textOptionFor(const QString &text, const QFont &font)
{
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::WrapAnywhere);
    option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    option.setTabStopDistance(TAB_WIDTH * QFontMetricsF(font).horizontalAdvance(u' '));
    return option;
}

/// Its height.
int layOut(QTextLayout &text, int width)
{
    text.setCacheEnabled(true);
    text.beginLayout();
    qreal height = 0;
    for (QTextLine line = text.createLine(); line.isValid(); line = text.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += line.height();
    }
    text.endLayout();
    return qCeil(height);
}

/// A sentence is read whole, in as many lines as it takes.
int layOutError(QTextLayout &text, const TDFindResultItem &item, const QFont &font, int width)
{
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    text.setFont(font);
    text.setText(errorText(item));
    text.setTextOption(option);
    return layOut(text, std::max(1, width));
}

} // namespace

TDSearchResultsTextFieldCell::TDSearchResultsTextFieldCell(QObject *parent)
    : QStyledItemDelegate(parent), _layouts(MOST_LAYOUTS)
{}

int TDSearchResultsTextFieldCell::rowHeight(const QFont &font)
{
    return std::max({MINIMUM_ROW_HEIGHT, qRound(ROW_HEIGHT_OF_TEXT * QFontInfo(font).pixelSize()),
                     QFontMetrics(font).height() + LEAST_ROOM_AROUND_TEXT});
}

void TDSearchResultsTextFieldCell::setGutterDigits(int digits)
{
    _gutterDigits = std::max(LEAST_GUTTER_DIGITS, digits);
    forgetAll();
}

QRect TDSearchResultsTextFieldCell::gutterRect(const QStyleOptionViewItem &option) const
{
    const int digit = QFontMetrics(resultsFont(option.font)).horizontalAdvance(u'0');
    return {option.rect.left(), option.rect.top(), _gutterDigits * digit, option.rect.height()};
}

QRect TDSearchResultsTextFieldCell::_bodyRect(const QStyleOptionViewItem &option) const
{
    return option.rect.adjusted(gutterRect(option).width() + GUTTER_GAP, 0, 0, 0);
}

const TDSearchResultsTextFieldCell::Layout &
TDSearchResultsTextFieldCell::_layout(const QStyleOptionViewItem &option, const TDFindResultItem &item) const
{
    const int width = std::max(1, _bodyRect(option).width());
    const bool isWhole = option.state & QStyle::State_Selected;
    Layout *known = _layouts.object(item.identity());
    if (known != nullptr && known->width == width && known->font == option.font &&
        (known->isWhole == isWhole || !known->isLong))
        return *known;

    auto *made = new Layout;
    ShownLine shown = _shown(item, isWhole ? LineExtent::Whole : LineExtent::Excerpt);
    made->styled = std::move(shown.look.styled);
    made->matches = std::move(shown.look.matches);
    made->isLong = shown.isLong;
    made->isWhole = isWhole;
    made->directions = directionsOf(made->styled.text);
    made->width = width;
    made->font = option.font;
    const QFont font = resultsFont(option.font);
    made->text.setFont(font);
    made->text.setText(made->styled.text);
    made->text.setTextOption(textOptionFor(made->styled.text, font));
    const int textHeight = layOut(made->text, width);
    const int roomAround = std::max(0, rowHeight(font) - QFontMetrics(font).height());
    made->height = std::max(MINIMUM_ROW_HEIGHT, textHeight + roomAround);
    made->above = roomAround / 2;
    _layouts.insert(item.identity(), made);
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the cache deletes only what is larger than itself.
    return *made;
}

QSize TDSearchResultsTextFieldCell::sizeHint(const QStyleOptionViewItem &option,
                                             const QModelIndex &index) const
{
    const TDFindResultItem &item = itemOf(index);
    if (!item.isMatchLine())
        return QStyledItemDelegate::sizeHint(option, index);
    if (item.matchLine() != nullptr)
        return {option.rect.width(), _layout(option, item).height};
    const int oneLine = rowHeight(resultsFont(option.font));
    const int width = _bodyRect(option).width() - readAsRect(option, item).width();
    QTextLayout text;
    const int more = layOutError(text, item, option.font, width) - QFontMetrics(option.font).height();
    return {option.rect.width(), oneLine + std::max(0, more)};
}

bool TDSearchResultsTextFieldCell::isLong(const QStyleOptionViewItem &option,
                                          const TDFindResultItem &item) const
{
    return item.matchLine() != nullptr && _layout(option, item).isLong;
}

QRect TDSearchResultsTextFieldCell::rectOfText(const QStyleOptionViewItem &option,
                                               const TDFindResultItem &item, TextRange range) const
{
    if (item.matchLine() == nullptr)
        return {};
    const Layout &layout = _layout(option, item);
    const QTextLine line =
        layout.text.lineForTextPosition(int(std::min(range.location, qint64(layout.styled.text.size()))));
    if (!line.isValid())
        return {};
    const QPoint origin = _bodyRect(option).topLeft() + QPoint(0, layout.above);
    const QRect rect = StyledLinePainter::rectOfRange(line, layout.directions, range, origin);
    return rect.isValid() ? rect : line.rect().toAlignedRect().translated(origin);
}

QRect TDSearchResultsTextFieldCell::rectOfMatch(const QStyleOptionViewItem &option,
                                                const TDFindResultItem &item, qint64 match) const
{
    if (item.matchLine() == nullptr)
        return {};
    return rectOfText(option, item, _layout(option, item).matches.value(match));
}

void TDSearchResultsTextFieldCell::setPreview(std::shared_ptr<const ReplacementPreview> preview)
{
    _preview = std::move(preview);
    forgetAll();
}

ShownLine TDSearchResultsTextFieldCell::_shown(const TDFindResultItem &item, LineExtent extent) const
{
    if (!_preview)
        return shownLine(*item.matchLine(), nullptr, extent);
    const LinePreview preview =
        _preview->ofLine(*item.matchLine(), item.parent() != nullptr ? item.parent()->encoding().encoding
                                                                     : TD_FILE_COMMON_UNKNOWN_ENCODING);
    return shownLine(*item.matchLine(), &preview, extent);
}

void TDSearchResultsTextFieldCell::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                         const QModelIndex &index) const
{
    const TDFindResultItem &item = itemOf(index);
    if (!item.isMatchLine())
        QStyledItemDelegate::paint(painter, option, index);
    else if (item.matchLine() != nullptr)
        _paintMatchLine(*painter, option, item);
    else
        _paintError(*painter, option, item);
}

void TDSearchResultsTextFieldCell::_paintMatchLine(QPainter &painter, const QStyleOptionViewItem &option,
                                                   const TDFindResultItem &item) const
{
    const Layout &layout = _layout(option, item);
    _paintNumber(painter, option, item, layout);
    const StyledLinePainter linePainter(painter, layout.styled, layout.directions,
                                        LineColors::on(option.palette));
    const QPoint origin = _bodyRect(option).topLeft() + QPoint(0, layout.above);
    const QRectF clip = painter.clipBoundingRect();
    for (int number = 0; number < layout.text.lineCount(); ++number) {
        const QTextLine line = layout.text.lineAt(number);
        const QRectF rect = line.rect().translated(origin);
        if (clip.isEmpty() || (rect.bottom() >= clip.top() && rect.top() <= clip.bottom()))
            linePainter.paint(line, origin);
    }
}

void TDSearchResultsTextFieldCell::_paintNumber(QPainter &painter, const QStyleOptionViewItem &option,
                                                const TDFindResultItem &item, const Layout &layout) const
{
    const QTextLine first = layout.text.lineAt(0);
    const QFont font = resultsFont(option.font);
    // On one line with the text, whatever other fonts that is in.
    const qreal baseline = option.rect.top() + layout.above +
                           (first.isValid() ? first.ascent() : qreal(QFontMetrics(font).ascent()));
    const QString number = QString::number(item.matchLine()->lineNumber());
    painter.setFont(font);
    painter.setPen(
        secondaryColor(option.palette.color(QPalette::Text), option.palette.color(QPalette::Base)));
    painter.drawText(
        QPointF(gutterRect(option).right() + 1 - QFontMetrics(font).horizontalAdvance(number), baseline),
        number);
}

void TDSearchResultsTextFieldCell::_paintError(QPainter &painter, const QStyleOptionViewItem &option,
                                               const TDFindResultItem &item) const
{
    QRect rect = _bodyRect(option);
    const QRect link = readAsRect(option, item);
    if (!link.isEmpty()) {
        rect.setRight(link.left() - 1);
        QFont font = option.font;
        font.setUnderline(true);
        painter.setFont(font);
        painter.setPen(linkColor(option.palette.color(QPalette::Text), option.palette.color(QPalette::Base)));
        painter.drawText(link, Qt::AlignCenter | Qt::TextSingleLine, readAsText());
    }
    QTextLayout text;
    const int height = layOutError(text, item, option.font, rect.width());
    painter.setPen(errorColor(option.palette));
    const int top = rect.top() + (rect.height() - height) / 2;
    text.draw(&painter, QPointF(rect.left(), top));
}

QRect TDSearchResultsTextFieldCell::readAsRect(const QStyleOptionViewItem &option,
                                               const TDFindResultItem &item) const
{
    if (!item.error() || item.parent() == nullptr || !mayBeReadAs(*item.parent()))
        return {};
    const QFontMetrics metrics(option.font);
    const QRect body = _bodyRect(option);
    const int width = metrics.horizontalAdvance(readAsText()) + 2 * LINK_MARGIN;
    const int text = metrics.horizontalAdvance(errorText(item));
    QRect link = body;
    link.setLeft(body.left() + std::min(text, std::max(0, body.width() - width)));
    link.setWidth(width);
    return link;
}

} // namespace tidemark
