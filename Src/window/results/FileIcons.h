#pragma once

#include <QIcon>
#include <QString>

namespace tidemark {

/// The icon for files of this name, decided by the name alone. Main thread only.
QIcon iconForFileName(const QString &fileName);
/// For files that couldn't be searched.
QIcon warningIcon();

} // namespace tidemark
