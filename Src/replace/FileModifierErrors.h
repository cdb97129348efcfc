#pragma once

#include "foundation/FilePath.h"
#include "foundation/TDError.h"

namespace tidemark {

/// The errors of rewriting a file, codes 25 to 35, with their texts.
TDError backupCreationError(const FilePath &path, int errorNumber);
TDError backupCopyError(const FilePath &path, const FilePath &backup, int errorNumber);
TDError backupDeletionError(const FilePath &backup, int errorNumber);
TDError fileDoesNotExistError(const FilePath &path);
TDError modificationDateError(const FilePath &path);
TDError fileModifiedError(const FilePath &path);
TDError truncationOpenError(const FilePath &path, const FilePath &backup);
TDError truncationError(const FilePath &path);
TDError truncationCloseError(const FilePath &path);
/// `closingError`, if there is one, becomes the underlying error.
TDError writeError(const FilePath &path, const FilePath &backup, const QString &exception,
                   const TDError &closingError);
TDError fileNotWritableError(const FilePath &path);

} // namespace tidemark
