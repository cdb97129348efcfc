#include "window/Symbols.h"

#include "window/Colors.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolButton>

#include <array>

namespace tidemark {

namespace {

/// A drawn symbol stands in a square of this side.
constexpr double SIDE = 16;
constexpr double PEN_WIDTH = 1.5;
/// The larger, the thinner.
constexpr double THIN_PEN_WIDTH = 1;
constexpr int LARGE_SIDE = 48;
constexpr std::array<int, 6> DRAWN_SIDES = {16, 24, 32, 48, 64, 96};
constexpr int SEEN_ALPHA = 128;
/// What an icon, which is larger than a letter, has to differ from its button.
constexpr double ICON_CONTRAST = 3;

QStringList namesOf(Symbol symbol)
{
    switch (symbol) {
    case Symbol::Add:
        return {QStringLiteral("list-add")};
    case Symbol::Remove:
        return {QStringLiteral("list-remove")};
    case Symbol::Previous:
        return {QStringLiteral("go-up")};
    case Symbol::Next:
        return {QStringLiteral("go-down")};
    case Symbol::ExpandCollapse:
        return {QStringLiteral("expand-all"), QStringLiteral("view-list-tree")};
    case Symbol::Clear:
        return {QStringLiteral("dialog-close"), QStringLiteral("edit-clear")};
    case Symbol::Search:
        return {QStringLiteral("edit-find"), QStringLiteral("system-search")};
    case Symbol::Folder:
        return {QStringLiteral("folder-open"), QStringLiteral("folder")};
    }
    return {};
}

QPainterPath arrow(double y, double direction)
{
    QPainterPath path(QPointF(4, y + direction * 4));
    path.lineTo(8, y);
    path.lineTo(12, y + direction * 4);
    return path;
}

QPainterPath pathOf(Symbol symbol)
{
    QPainterPath path;
    switch (symbol) {
    case Symbol::Add:
        path.moveTo(8, 3);
        path.lineTo(8, 13);
        [[fallthrough]];
    case Symbol::Remove:
        path.moveTo(3, 8);
        path.lineTo(13, 8);
        break;
    case Symbol::Previous:
        return arrow(6, 1);
    case Symbol::Next:
        return arrow(10, -1);
    case Symbol::ExpandCollapse:
        path = arrow(2.5, 1);
        path.addPath(arrow(13.5, -1));
        break;
    case Symbol::Clear:
        path.moveTo(4, 4);
        path.lineTo(12, 12);
        path.moveTo(12, 4);
        path.lineTo(4, 12);
        break;
    case Symbol::Search:
        path.addEllipse(QPointF(6.8, 6.8), 4.3, 4.3);
        path.moveTo(10, 10);
        path.lineTo(13.8, 13.8);
        break;
    case Symbol::Folder:
        path.moveTo(2, 13);
        path.lineTo(2, 3.5);
        path.lineTo(6, 3.5);
        path.lineTo(7.5, 5.5);
        path.lineTo(14, 5.5);
        path.lineTo(14, 13);
        path.closeSubpath();
        break;
    }
    return path;
}

QPixmap drawn(Symbol symbol, const QColor &color, int side)
{
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / SIDE, side / SIDE);
    painter.setPen(QPen(color, side < LARGE_SIDE ? PEN_WIDTH : THIN_PEN_WIDTH, Qt::SolidLine, Qt::RoundCap,
                        Qt::RoundJoin));
    painter.drawPath(pathOf(symbol));
    return pixmap;
}

/// Symbols of a theme for light windows can be nearly as dark as a dark one.
bool isSeen(const QIcon &icon, const QColor &background)
{
    const QImage image = icon.pixmap(int(SIDE)).toImage();
    qint64 red = 0;
    qint64 green = 0;
    qint64 blue = 0;
    qint64 count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() < SEEN_ALPHA)
                continue;
            red += pixel.red();
            green += pixel.green();
            blue += pixel.blue();
            ++count;
        }
    }
    return count > 0 && contrastRatio(QColor(int(red / count), int(green / count), int(blue / count)),
                                      background) >= ICON_CONTRAST;
}

class SymbolKeeper : public QObject
{
public:
    SymbolKeeper(QAbstractButton *button, Symbol symbol) : QObject(button), _button(button), _symbol(symbol)
    {
        button->installEventFilter(this);
        _show();
    }

private:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
            _show();
        return QObject::eventFilter(watched, event);
    }
    void _show() { _button->setIcon(symbolIcon(_symbol, _button->palette())); }

    QAbstractButton *_button;
    const Symbol _symbol;
};

} // namespace

QIcon symbolIcon(Symbol symbol, const QPalette &palette)
{
    const QStringList names = namesOf(symbol);
    for (const QString &name : names) {
        QIcon icon = QIcon::fromTheme(name);
        if (isSeen(icon, palette.color(QPalette::Active, QPalette::Button)))
            return icon;
    }
    QIcon icon = drawnSymbol(symbol, palette.color(QPalette::Active, QPalette::ButtonText));
    for (const int side : DRAWN_SIDES)
        icon.addPixmap(drawn(symbol, palette.color(QPalette::Disabled, QPalette::ButtonText), side),
                       QIcon::Disabled);
    return icon;
}

QIcon drawnSymbol(Symbol symbol, const QColor &color)
{
    QIcon icon;
    for (const int side : DRAWN_SIDES)
        icon.addPixmap(drawn(symbol, color, side));
    return icon;
}

void showSymbol(QAbstractButton *button, Symbol symbol)
{
    new SymbolKeeper(button, symbol);
    if (auto *toolButton = qobject_cast<QToolButton *>(button)) {
        toolButton->setArrowType(Qt::NoArrow);
        toolButton->setToolButtonStyle(Qt::ToolButtonIconOnly);
    }
}

} // namespace tidemark
