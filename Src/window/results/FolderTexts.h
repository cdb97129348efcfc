#pragma once

#include <QString>
#include <QStringList>

namespace tidemark {

/// "~/src" for a folder below the user's home.
QString folderForPeople(const QString &folder);
/// The same with its folders in order, "~ › src".
QString breadcrumbOf(const QString &folder);
/// The folder from the one of the locations on that it is in: "docs › ru"; the location's own name first
/// where that alone tells it from others. As a breadcrumb when it is in none.
QString folderInLocations(const QString &folder, const QStringList &locations);

} // namespace tidemark
