#include "window/locations/PathControlWithPathBinding.h"

#include "foundation/LocalizedText.h"
#include "window/Colors.h"
#include "window/results/FolderTexts.h"

#include <QApplication>
#include <QPainter>
#include <QStringList>

namespace tidemark {

namespace {

const QString ARROW = QStringLiteral(" › ");
const QString LEFT_OUT = QStringLiteral("…");

QString joinedWithout(const QStringList &components, qsizetype first, qsizetype count)
{
    return (components.first(first) + QStringList{LEFT_OUT} + components.sliced(first + count)).join(ARROW);
}

} // namespace

PathControlWithPathBinding::PathControlWithPathBinding(int pathRole, int existsRole, QObject *parent)
    : QStyledItemDelegate(parent), _pathRole(pathRole), _existsRole(existsRole)
{}

QString PathControlWithPathBinding::breadcrumb(const FilePath &path, const QFontMetrics &metrics, int width)
{
    const QStringList components = folderForPeople(path.displayText()).split(u'/', Qt::SkipEmptyParts);
    if (components.isEmpty())
        return QStringLiteral("/");
    QString text = components.join(ARROW);
    // Whole folders go first, from the middle outwards; the item's own name stays.
    for (qsizetype count = 1; metrics.horizontalAdvance(text) > width && count < components.size(); ++count)
        text = joinedWithout(components, (components.size() - count) / 2, count);
    return metrics.elidedText(text, Qt::ElideMiddle, width);
}

void PathControlWithPathBinding::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                       const QModelIndex &index) const
{
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    const bool exists = index.data(_existsRole).toBool();
    if (!exists) {
        row.font.setItalic(true);
        row.state.setFlag(QStyle::State_Enabled, false);
        row.palette.setCurrentColorGroup(QPalette::Disabled);
        // Grey, and to be read nevertheless.
        row.palette.setColor(QPalette::Disabled, QPalette::Text,
                             secondaryColor(option.palette.color(QPalette::Active, QPalette::Text),
                                            option.palette.color(QPalette::Active, QPalette::Base)));
    }
    const QStyle *style = row.widget != nullptr ? row.widget->style() : QApplication::style();
    const QFontMetrics metrics(row.font);
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &row, row.widget) + 1;
    const int room = style->subElementRect(QStyle::SE_ItemViewItemText, &row, row.widget).right() -
                     style->subElementRect(QStyle::SE_ItemViewItemText, &row, row.widget).left() - 2 * margin;
    const QString remark = exists ? QString() : localizedString(" (no longer exists)");
    row.text = breadcrumb(index.data(_pathRole).value<FilePath>(), metrics,
                          qMin(room, row.rect.width()) - metrics.horizontalAdvance(remark)) +
               remark;
    row.textElideMode = Qt::ElideMiddle;
    style->drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);
}

} // namespace tidemark
