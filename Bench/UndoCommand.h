#pragma once

#include "DriverOptions.h"
#include "SearchRun.h"

#include "replace/UndoStep.h"

namespace tidemark {

/// Prints each line of the files as it would be written, with its path and number in front; nothing is
/// changed. False, with the error, when the replacement can't be formed.
bool printPreview(const FindResultItems &files, const DriverOptions &options, TDError &error);

/// Takes the last step of the journal back and prints a line for each of its files: `done` or `refused`, a
/// tab, the path percent-encoded. False when there is no step, or not all files were done.
bool takeBackLastStep(UndoStepKind kind);

/// Prints a line for each step, the latest first: `undo` or `redo`, date, files, matches, bytes on the disk,
/// find text and replace text percent-encoded, between tabs.
void printHistory();

/// One word.
const char *nameOfUndoKeeping(UndoKeeping keeping);

} // namespace tidemark
