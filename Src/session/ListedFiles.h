#pragma once

#include "foundation/FilePath.h"

#include <QSet>
#include <QString>

namespace tidemark {

class FindResults;

/// Searches those of the listed files again whose content has changed by the program's own doing, and lists
/// what is found in them now in their place; a file without a match goes. With the settings as they are now.
/// `changed` are paths without links in them. Main thread; as long as searching takes.
void searchListedFilesAgain(FindResults &results, const QSet<FilePath> &changed, const QString &findText);

} // namespace tidemark
