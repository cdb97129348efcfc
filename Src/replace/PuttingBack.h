#pragma once

#include "replace/BackupFile.h"
#include "replace/FlushedFileSystems.h"
#include "replace/RewriteRecord.h"

#include <functional>
#include <optional>
#include <vector>

namespace tidemark {

/// Puts the old content back into files that were left half written. What stands in each now is kept as a new
/// backup, beside the file or, where that can't be, in the temporary folder. The work is done in steps for
/// all files at once, each of which is on the disk before the next one. One thread.
class PuttingBack
{
public:
    using Rewrite = RewriteRecord::Left::File;
    /// Gets the backup of each file of which the disk didn't confirm the old content: reading the file proves
    /// nothing from then on.
    using FailedFlush = std::function<void(const FilePath &backup)>;

    /// The rewrites whose backups go back, each of a file of its own.
    PuttingBack(const std::vector<Rewrite> &rewrites, FailedFlush noteFailedFlush);

    /// For each rewrite, in their order: 0 when its file has the old content on the disk again, or errno;
    /// ESTALE where file or backup aren't what they were. The backup stays in either case, and so does the
    /// new one. Once.
    std::vector<int> carryOut();

private:
    struct File
    {
        Rewrite rewrite;
        std::optional<BackupFile> kept; ///< what stood there
        FileState present;
        bool isFlushedWithOthers = false;
        int errorNumber = 0;
    };
    static void _keepPresentContent(File &file);
    int _overwriteWithOld(const File &file) const;

    std::vector<File> _files;
    FailedFlush _noteFailedFlush;
};

} // namespace tidemark
