#include "window/results/FileIcons.h"

#include <QApplication>
#include <QHash>
#include <QMimeDatabase>
#include <QStyle>

namespace tidemark {

namespace {

QIcon iconFromTheme(const QString &fileName)
{
    const QMimeType type = QMimeDatabase().mimeTypeForFile(fileName, QMimeDatabase::MatchExtension);
    QIcon icon = QIcon::fromTheme(type.iconName());
    if (icon.isNull())
        icon = QIcon::fromTheme(type.genericIconName());
    return icon.isNull() ? QApplication::style()->standardIcon(QStyle::SP_FileIcon) : icon;
}

} // namespace

QIcon iconForFileName(const QString &fileName)
{
    static QHash<QString, QIcon> icons;
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    const QString suffix = dot > 0 ? fileName.mid(dot) : QString();
    const auto known = icons.constFind(suffix);
    if (known != icons.constEnd())
        return *known;
    return *icons.insert(suffix, iconFromTheme(fileName));
}

QIcon warningIcon()
{
    return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
}

} // namespace tidemark
