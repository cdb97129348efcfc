#include "window/results/TDSearchResultsTextFieldCell.h"

#include "matching/TDFindResultItem.h"
#include "session/ReplacementPreview.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace tidemark {

namespace {

constexpr int MOST_LAYOUTS = 256;
constexpr double SYSTEM_FONT_SIZE = 13;
constexpr double SMALLEST_POINT_SIZE = 8;
constexpr QChar RIGHT_TO_LEFT_ISOLATE = QChar(0x2067);
constexpr QColor RED_ON_DARK = QColor(255, 120, 110);

const TDFindResultItem &itemOf(const QModelIndex &index)
{
    return *static_cast<const TDFindResultItem *>(index.internalPointer());
}

bool isInstalled(const QString &family)
{
    static QHash<QString, bool> known;
    const auto found = known.constFind(family);
    return found != known.constEnd() ? *found : *known.insert(family, QFontDatabase::hasFamily(family));
}

QPalette::ColorGroup colorGroup(const QStyleOptionViewItem &option)
{
    if (!(option.state & QStyle::State_Enabled))
        return QPalette::Disabled;
    return option.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
}

QColor textColor(const QStyleOptionViewItem &option)
{
    const bool isSelected = option.state & QStyle::State_Selected;
    return option.palette.color(colorGroup(option), isSelected ? QPalette::HighlightedText : QPalette::Text);
}

/// The given grey can't be read on a highlight.
std::optional<QColor> selectedPrefixColor(const QStyleOptionViewItem &option)
{
    if (!(option.state & QStyle::State_Selected))
        return {};
    QColor color = textColor(option);
    color.setAlphaF(0.75F);
    return color;
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

qsizetype prefixLength(const TDFindResultItem &item)
{
    return item.matchLine() != nullptr ? QString::number(item.matchLine()->lineNumber()).size() + 2 : 0;
}

/// The number stays at the left of a line that is written from right to left, and the line is as it is by
/// itself: an invisible character between the two parts them. Says where it stands, -1 for none.
qsizetype partNumberFromLine(StyledText &styled, qsizetype prefix)
{
    if (prefix == 0 || !QStringView(styled.text).sliced(prefix).isRightToLeft())
        return -1;
    styled.text.insert(prefix, RIGHT_TO_LEFT_ISOLATE);
    for (StyledRun &run : styled.runs) {
        if (run.range.location >= prefix)
            ++run.range.location;
        else if (run.range.end() > prefix)
            ++run.range.length;
    }
    return prefix;
}

} // namespace

TDSearchResultsTextFieldCell::TDSearchResultsTextFieldCell(QObject *parent)
    : QStyledItemDelegate(parent), _layouts(MOST_LAYOUTS)
{}

QFont TDSearchResultsTextFieldCell::fontOf(const StyledFont &font, const QFont &viewFont)
{
    QFont result = viewFont;
    if (!font.family.isEmpty() && isInstalled(font.family))
        result.setFamily(font.family);
    const double viewSize = QFontInfo(viewFont).pointSizeF();
    const double smallest = std::min(SMALLEST_POINT_SIZE, viewSize);
    result.setPointSizeF(std::max(smallest, viewSize * font.pointSize / SYSTEM_FONT_SIZE));
    return result;
}

const TDSearchResultsTextFieldCell::Layout &
TDSearchResultsTextFieldCell::_layout(const QStyleOptionViewItem &option, const TDFindResultItem &item) const
{
    const int width = std::max(1, option.rect.width());
    Layout *known = _layouts.object(&item);
    if (known != nullptr && known->width == width && known->font == option.font)
        return *known;

    auto *made = new Layout;
    // The base colour is put over it when it is painted, as the row is selected then or not.
    if (item.matchLine() != nullptr) {
        MatchLineLook look = _lookOf(item);
        made->styled = std::move(look.styled);
        made->matches = std::move(look.matches);
    } else {
        made->styled = displayFilenameOrMatchLine(item, false);
    }
    made->parting = partNumberFromLine(made->styled, prefixLength(item));
    made->directions = directionsOf(made->styled.text);
    made->width = width;
    made->font = option.font;
    made->text.setFont(fontOf(made->styled.font, option.font));
    made->text.setText(made->styled.text);
    QTextOption textOption;
    textOption.setWrapMode(QTextOption::WrapAnywhere);
    textOption.setTextDirection(Qt::LeftToRight);
    made->text.setTextOption(textOption);
    made->text.setCacheEnabled(true);
    made->text.beginLayout();
    qreal height = 0;
    for (QTextLine line = made->text.createLine(); line.isValid(); line = made->text.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += line.height();
    }
    made->text.endLayout();
    made->height = qCeil(height);
    _layouts.insert(&item, made);
    return *made;
}

QSize TDSearchResultsTextFieldCell::sizeHint(const QStyleOptionViewItem &option,
                                             const QModelIndex &index) const
{
    const TDFindResultItem &item = itemOf(index);
    if (!item.isMatchLine())
        return QStyledItemDelegate::sizeHint(option, index);
    const int height = item.matchLine() != nullptr
                           ? _layout(option, item).height
                           : QFontMetrics(fontOf(item.displayError().font, option.font)).height() + 2;
    return {option.rect.width(), std::max(MINIMUM_ROW_HEIGHT, height)};
}

QRect TDSearchResultsTextFieldCell::rectOfText(const QStyleOptionViewItem &option,
                                               const TDFindResultItem &item, TextRange range) const
{
    if (item.matchLine() == nullptr)
        return {};
    const Layout &layout = _layout(option, item);
    if (layout.parting >= 0 && range.location >= layout.parting)
        ++range.location;
    const QTextLine line =
        layout.text.lineForTextPosition(int(std::min(range.location, qint64(layout.styled.text.size()))));
    if (!line.isValid())
        return {};
    const QRect rect = StyledLinePainter::rectOfRange(line, layout.directions, range, {});
    return rect.isValid() ? rect : line.rect().toAlignedRect();
}

QRect TDSearchResultsTextFieldCell::rectOfMatch(const QStyleOptionViewItem &option,
                                                const TDFindResultItem &item, qint64 match) const
{
    const QList<TextRange> matches = _layout(option, item).matches;
    const bool exists = match >= 0 && match < matches.size();
    return rectOfText(option, item, exists ? matches[match] : TextRange{prefixLength(item), 0});
}

void TDSearchResultsTextFieldCell::setPreview(std::shared_ptr<const ReplacementPreview> preview)
{
    _preview = std::move(preview);
    forgetAll();
}

MatchLineLook TDSearchResultsTextFieldCell::_lookOf(const TDFindResultItem &item) const
{
    if (!_preview)
        return matchLineLook(*item.matchLine(), false, nullptr);
    const FileMatches *matches = item.parent() != nullptr ? item.parent()->matches() : nullptr;
    const LinePreview preview = _preview->ofLine(
        *item.matchLine(), matches != nullptr ? matches->encoding : TD_FILE_COMMON_UNKNOWN_ENCODING);
    return matchLineLook(*item.matchLine(), false, &preview);
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
    const StyledLinePainter linePainter(painter, layout.styled, layout.directions, textColor(option),
                                        selectedPrefixColor(option));
    const QRectF clip = painter.clipBoundingRect();
    for (int number = 0; number < layout.text.lineCount(); ++number) {
        const QTextLine line = layout.text.lineAt(number);
        const QRectF rect = line.rect().translated(option.rect.topLeft());
        if (clip.isEmpty() || (rect.bottom() >= clip.top() && rect.top() <= clip.bottom()))
            linePainter.paint(line, option.rect.topLeft());
    }
}

void TDSearchResultsTextFieldCell::_paintError(QPainter &painter, const QStyleOptionViewItem &option,
                                               const TDFindResultItem &item) const
{
    const StyledText styled = item.displayError();
    const QFont font = fontOf(styled.font, option.font);
    const bool isSelected = option.state & QStyle::State_Selected;
    const bool isDark = option.palette.color(QPalette::Base).lightnessF() < 0.5F;
    QColor color = isDark ? RED_ON_DARK : colorOf(styled.foregroundAt(0).value_or(TD_COLOR_RED));
    if (isSelected)
        color = textColor(option);
    painter.save();
    painter.setFont(font);
    painter.setPen(color);
    const QString line = QString(styled.text).replace(QLatin1Char('\n'), QLatin1Char(' '));
    painter.drawText(option.rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     QFontMetrics(font).elidedText(line, Qt::ElideMiddle, option.rect.width()));
    painter.restore();
}

} // namespace tidemark
