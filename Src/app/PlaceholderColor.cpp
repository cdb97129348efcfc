#include "app/PlaceholderColor.h"

#include "window/Colors.h"

#include <QApplication>
#include <QEvent>
#include <QPalette>

namespace tidemark {

namespace {

bool isReadable(const QColor &color, const QColor &base)
{
    return contrastRatio(mixed(color, base, double(color.alphaF())), base) >= READABLE_CONTRAST;
}

void makePlaceholdersReadable()
{
    QPalette palette = QApplication::palette();
    const QColor base = palette.color(QPalette::Active, QPalette::Base);
    if (isReadable(palette.color(QPalette::Active, QPalette::PlaceholderText), base))
        return;
    // All others stay the desktop's, also when they change.
    palette.setColor(QPalette::PlaceholderText,
                     secondaryColor(palette.color(QPalette::Active, QPalette::Text), base));
    QApplication::setPalette(palette);
}

class PlaceholderKeeper : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::ApplicationPaletteChange)
            makePlaceholdersReadable();
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

void keepPlaceholdersReadable()
{
    makePlaceholdersReadable();
    qApp->installEventFilter(new PlaceholderKeeper(qApp));
}

} // namespace tidemark
