#pragma once

#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "replace/RewriteProblem.h"

namespace tidemark {

/// The errors of rewriting a file, codes 25 to 35, with their texts.
TDError backupCreationError(const FilePath &path, int errorNumber);
TDError backupCopyError(const FilePath &path, const FilePath &backup, int errorNumber);
TDError backupDeletionError(const FilePath &backup, int errorNumber);
TDError fileDoesNotExistError(const FilePath &path);
TDError modificationDateError(const FilePath &path);
TDError fileModifiedError(const FilePath &path);
TDError truncationOpenError(const FilePath &path, const FilePath &backup);
enum class FileNow {
    Damaged, ///< in need of its backup
    AsItWas, ///< which the error says behind its usual texts
};
TDError truncationError(const FilePath &path, FileNow fileNow);
TDError truncationCloseError(const FilePath &path);
TDError writeError(const FilePath &path, const FilePath &backup, const QString &exception, FileNow fileNow);
TDError fileNotWritableError(const FilePath &path);
/// For a file that is left alone because of something that isn't its own: the record, the disk.
TDError refusalError(const FilePath &path, RewriteProblem problem, int errorNumber);

} // namespace tidemark
