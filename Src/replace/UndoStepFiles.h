#pragma once

#include "foundation/FilePath.h"

#include <QByteArray>

#include <functional>
#include <vector>

namespace tidemark {

// The names of the files in a journal: a word, a number that grows, and letters that make it unique.

inline const QByteArray UNDO_PREFIX = QByteArrayLiteral("undo-");
inline const QByteArray REDO_PREFIX = QByteArrayLiteral("redo-");
/// Lists of backups that runs left.
inline const QByteArray KEPT_PREFIX = QByteArrayLiteral("kept-");

/// The names in a folder that are such, the oldest first. None where the folder can't be read.
std::vector<QByteArray> undoStepFilesIn(const FilePath &folder);

bool isUndoStepFile(const QByteArray &name);

/// A name behind all that are in the folder, whose last letters are left to makeUniqueFile().
QByteArray templateForUndoStepFile(const FilePath &folder, const QByteArray &prefix);

/// Tries to lock a step until it works, for a tenth of a second: whoever lists the steps locks each for a
/// moment.
bool lockedPatiently(const std::function<bool()> &lock);

} // namespace tidemark
