#pragma once

#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "matching/TDFindResultItem.h"

#include <functional>

namespace tidemark {

/// Tells whether a path is that of a search location that is a single file; the backup of such a file is
/// transient.
using IsFileInSearchLocations = std::function<bool(const FilePath &path)>;

/// Writes a file node's match lines to its file and takes over the file's new date. A node without match
/// lines is left alone and counts as saved. False with the error of the rewrite.
bool saveToDiskFindResultItem(TDFindResultItem &file, const IsFileInSearchLocations &isFileInSearchLocations,
                              TDError &error);

/// The same for some of the node's lines only. The node's date isn't touched.
bool saveLinesToDisk(TDFindResultItem &file, const MatchLines &lines,
                     const IsFileInSearchLocations &isFileInSearchLocations, TDError &error);

} // namespace tidemark
