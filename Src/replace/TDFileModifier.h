#pragma once

#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "foundation/TDFileCommon.h"
#include "foundation/TextEncoding.h"
#include "matching/TDMatchLineHighlighter.h"
#include "replace/FileCopy.h"

#include <memory>
#include <optional>

namespace tidemark {

/// Rewrites one file in place. The file keeps its identity: links to it, owner, mode and attributes stay, as
/// its content is replaced and nothing else. Many files at once are the business of RewriteQueue.
class TDFileModifier
{
public:
    /// Puts the match lines in place of the lines with their numbers; every other byte stays as it was.
    ///
    /// Refused, with the file untouched and no backup left, when the file is missing (28), not writable (35),
    /// not of exactly the given date (29, 30), when no backup can be made (25 to 27), or when the new content
    /// can't be produced without losing a byte (4, or the reader's error). From then on the backup holds the
    /// old content whatever happens (31 to 34). A backup that isn't to be kept is deleted last of all, when
    /// the new content is on the disk; when that fails the rewrite counts as failed (27) although the new
    /// content is in place.
    ///
    /// `encoding` is what the reader is given, normally the request to detect it. A transient backup goes to
    /// the temporary folder and is always deleted; otherwise it lies beside the file and is kept, if the
    /// settings say so, at the first rewrite of a file in this run of the program. Returns nothing, with the
    /// error set, on any failure.
    static std::unique_ptr<TDFileModifier>
    fileModifierWithFile(const FilePath &path, std::optional<FileDate> originalFileModificationDate,
                         const MatchLines &matchLines, StringEncoding encoding, bool hadByteOrderMarker,
                         bool transientBackupFile, TDError &error);

    /// With links resolved.
    const FilePath &path() const { return _path; }

    // The steps, each of which sets the error when it fails.
    static bool fileExistsAtPath(const FilePath &path, TDError &error);
    static bool fileIsWritableAtPath(const FilePath &path, TDError &error);
    /// Nothing when the date can't be read.
    static std::optional<bool> fileModifiedSince(std::optional<FileDate> date, const FilePath &path,
                                                 TDError &error);
    /// The name of an empty file that didn't exist before, for this user only. `descriptor` is open for
    /// writing to it and the caller's.
    static std::optional<FilePath> createEmptyBackupFile(const FilePath &path, bool transientBackupFile,
                                                         int &descriptor, TDError &error);
    static bool deleteTemporaryBackupFile(const FilePath &backupPath, TDError &error);
    /// Fills the empty file and closes its descriptor; deletes it on a failure. `copied` gets the state of
    /// the file before it was copied.
    static bool copyOriginalFileToBackupLocation(const FilePath &path, const FilePath &backupPath,
                                                 int descriptor, Flush flush, FileState &copied,
                                                 TDError &error);
    /// Nothing is touched, and the code is 30, when the file isn't in the given state.
    static bool truncateFile(const FilePath &path, const FilePath &backupPath, const FileState &state,
                             TDError &error);

    /// The files rewritten by this process, with links resolved. Main thread.
    static bool isPathToModifiedFile(const FilePath &path);
    static void notePathToModifiedFile(const FilePath &path);
    /// Whether the backup of a file, with links resolved, is to be kept. Main thread.
    static bool keepsBackupOfFile(const FilePath &path, bool transientBackupFile);

private:
    explicit TDFileModifier(const FilePath &path) : _path(path) {}

    FilePath _path;
};

} // namespace tidemark
