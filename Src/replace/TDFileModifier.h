#pragma once

#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "foundation/TDFileCommon.h"
#include "matching/FoundLines.h"
#include "text/TextEncoding.h"

#include <memory>
#include <optional>

namespace tidemark {

class UndoStepWriter;

/// Rewrites one file in place, as a run of a single file. The file keeps its identity: links to it, owner,
/// mode and attributes stay, as its content is overwritten and nothing else. The steps are those of
/// FileRewrite and BackupFile.
class TDFileModifier
{
public:
    /// Puts the match lines in place of the lines with their numbers; every other byte stays as it was. Where
    /// that changes nothing, nothing is written.
    ///
    /// Refused, with the file untouched and no backup left, when the file is missing (28), not writable (35),
    /// not of exactly the given date (29, 30), when no backup can be made (25, 26), when the new content
    /// can't be produced without losing a byte (4, or the reader's error), when there is no room for it (34)
    /// or when it can't be noted what is about to be written (37). From then on the backup holds the old
    /// content whatever happens (31 to 34). A backup that isn't to be kept is deleted last of all, when the
    /// new content is on the disk; when that fails the rewrite counts as failed (27) although the new content
    /// is in place.
    ///
    /// `encoding` is what the reader is given, normally the request to detect it. A transient backup goes to
    /// the temporary folder and is always deleted; otherwise it lies beside the file and is kept, if the
    /// settings say so, at the first rewrite of a file in this run of the program. The change becomes a part
    /// of the undo step, if there is one. Returns nothing, with the error set, on any failure. Main thread.
    static std::unique_ptr<TDFileModifier>
    fileModifierWithFile(const FilePath &path, std::optional<FileDate> originalFileModificationDate,
                         const MatchLines &matchLines, StringEncoding encoding, bool hadByteOrderMarker,
                         bool transientBackupFile, TDError &error,
                         const std::shared_ptr<UndoStepWriter> &undoStep = {});

    /// With links resolved.
    const FilePath &path() const { return _path; }

private:
    explicit TDFileModifier(const FilePath &path) : _path(path) {}

    FilePath _path;
};

} // namespace tidemark
