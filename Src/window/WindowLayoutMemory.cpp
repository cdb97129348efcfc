#include "window/WindowLayoutMemory.h"

#include "foundation/UserDefaults.h"
#include "ui_MyDocument.h"
#include "window/SearchWindow.h"

#include <QHeaderView>
#include <QScreen>

#include <algorithm>

namespace tidemark {

namespace {

const QString PLACE = QStringLiteral("place");
const QString MAXIMIZED = QStringLiteral("maximized");
const QString DIVIDER = QStringLiteral("divider");
const QString COLUMNS = QStringLiteral("columns");
constexpr int LEAST_COLUMN = 40;
constexpr int WIDEST_COLUMN = 2000;

QString keyOf(const QScreen &screen)
{
    return QStringLiteral("%1 %2x%3")
        .arg(screen.name())
        .arg(screen.geometry().width())
        .arg(screen.geometry().height());
}

/// As much of it as fits, moved onto the screen.
QRect onScreen(QRect place, const QScreen &screen)
{
    const QRect room = screen.availableGeometry();
    place.setSize(place.size().boundedTo(room.size() - SearchWindow::FRAME));
    place.moveLeft(std::clamp(place.left(), room.left(), room.right() - place.width()));
    place.moveTop(std::clamp(place.top(), room.top(), room.bottom() - place.height()));
    return place;
}

QVariantMap layouts()
{
    return UserDefaults::standard().objectForKey(TD_USER_DEFAULTS_NAME_WINDOW_LAYOUTS).toMap();
}

} // namespace

void restoreLayout(SearchWindow &window)
{
    const QScreen &screen = *window.screen();
    const QVariantMap layout = layouts().value(keyOf(screen)).toMap();
    const QRect place = layout.value(PLACE).toRect();
    if (!place.isValid())
        return;
    window.setGeometry(onScreen(place, screen));
    if (layout.value(MAXIMIZED).toBool())
        window.setWindowState(window.windowState() | Qt::WindowMaximized);
    const int divider = layout.value(DIVIDER).toInt();
    if (divider > 0 && divider < window.height())
        window.ui().splitView->setOpeningTop(divider);
    QHeaderView *header = window.ui().searchResultsOutlineView->header();
    const QVariantList columns = layout.value(COLUMNS).toList();
    for (int column = 0; column < std::min(header->count(), int(columns.size())); ++column) {
        if (const int width = columns[column].toInt(); width > 0)
            header->resizeSection(column, std::clamp(width, LEAST_COLUMN, WIDEST_COLUMN));
    }
}

void saveLayout(const SearchWindow &window)
{
    QVariantList columns;
    const QHeaderView *header = window.ui().searchResultsOutlineView->header();
    for (int column = 0; column < header->count(); ++column)
        columns << header->sectionSize(column);
    const bool isMaximized = window.isMaximized() || window.isFullScreen();
    QVariantMap all = layouts();
    all[keyOf(*window.screen())] =
        QVariantMap{{PLACE, isMaximized ? window.normalGeometry() : window.geometry()},
                    {MAXIMIZED, isMaximized},
                    {DIVIDER, window.ui().splitView->sizes().value(0)},
                    {COLUMNS, columns}};
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_WINDOW_LAYOUTS, all);
}

} // namespace tidemark
