#pragma once

#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "matching/TDFindResultItem.h"
#include "replace/FileRewrite.h"

#include <functional>
#include <memory>

namespace tidemark {

class UndoStepWriter;

/// Tells whether a path is that of a search location that is a single file; the backup of such a file is
/// transient.
using IsFileInSearchLocations = std::function<bool(const FilePath &path)>;

/// What it takes to write the given lines of a file node to its file. `nowAndThen` is called in between, as
/// files can have millions of lines.
FileRewrite::Request rewriteRequest(
    const TDFindResultItem &file, const MatchLines &lines,
    const IsFileInSearchLocations &isFileInSearchLocations, const std::function<void()> &nowAndThen = [] {});

/// To be called when the lines have been written, before any of them changes again.
void noteSavedLines(
    TDFindResultItem &file, const MatchLines &lines, const std::function<void()> &nowAndThen = [] {});

/// Writes a file node's match lines to its file and takes over the file's new date. A node without match
/// lines is left alone and counts as saved. False with the error of the rewrite.
bool saveToDiskFindResultItem(TDFindResultItem &file, const IsFileInSearchLocations &isFileInSearchLocations,
                              TDError &error);

/// The same for some of the node's lines only, as a part of the undo step if there is one. The node's date
/// isn't touched.
bool saveLinesToDisk(TDFindResultItem &file, const MatchLines &lines,
                     const IsFileInSearchLocations &isFileInSearchLocations, TDError &error,
                     const std::shared_ptr<UndoStepWriter> &undoStep = {});

} // namespace tidemark
