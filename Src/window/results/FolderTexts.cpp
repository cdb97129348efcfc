#include "window/results/FolderTexts.h"

#include <QDir>

namespace tidemark {

namespace {

const QString SEPARATOR = QStringLiteral(" › ");

bool isIn(const QString &folder, const QString &location)
{
    return folder == location || folder.startsWith(location + u'/');
}

} // namespace

QString folderForPeople(const QString &folder)
{
    const QString home = QDir::homePath();
    // Also what stands for a home where there is none.
    if (home == QLatin1String("/"))
        return folder;
    if (folder == home)
        return QStringLiteral("~");
    const bool isInHome = folder.startsWith(home + QLatin1Char('/'));
    return isInHome ? QLatin1Char('~') + folder.mid(home.size()) : folder;
}

QString breadcrumbOf(const QString &folder)
{
    const QStringList components = folderForPeople(folder).split(u'/', Qt::SkipEmptyParts);
    return components.isEmpty() ? folder : components.join(SEPARATOR);
}

QString folderInLocations(const QString &folder, const QStringList &locations)
{
    QString nearest;
    for (const QString &location : locations) {
        if (isIn(folder, location) && location.size() > nearest.size())
            nearest = location;
    }
    if (nearest.isEmpty())
        return breadcrumbOf(folder);
    QStringList components = folder.mid(nearest.size()).split(u'/', Qt::SkipEmptyParts);
    if (components.isEmpty() || locations.size() > 1)
        components.prepend(nearest.section(u'/', -1));
    return components.join(SEPARATOR);
}

} // namespace tidemark
