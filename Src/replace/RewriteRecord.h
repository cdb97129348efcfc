#pragma once

#include "foundation/Descriptor.h"
#include "foundation/FilePath.h"
#include "replace/FileState.h"
#include "replace/RecordLock.h"

#include <QSet>

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace tidemark {

/// Makes a folder for this user only, and those above it, unless it is there; false with errno.
bool makeUserFolder(const FilePath &folder);

/// How many files of a run are written completely, of how many.
struct RunProgress
{
    qint64 done = 0;
    qint64 total = 0;
};

/// What one group of files leaves behind should the process or the machine stop while they are rewritten: a
/// file in the folder of records, locked while the process lives. It is made before the first backup of the
/// group, gets each backup's name before there is such a file, and is closed by a list of the rewrites, which
/// is on the disk before the first of the files is changed. What became of a file is told from hashes alone,
/// so a crash at any moment leaves no false entry. Any thread.
class RewriteRecord
{
public:
    /// One file that is rewritten. Paths are bytes, links in them resolved.
    struct Entry
    {
        FilePath path;
        FilePath backup;
        FileState file; ///< before it is touched
        ContentDigest oldContent;
        ContentDigest newContent;
        bool isBackupKept = false;
    };

    /// A new record of this process in the folder, which is made, for this user only, when it isn't there.
    /// Null, with `errorNumber` set, when nothing can be noted there.
    static std::shared_ptr<RewriteRecord> recordInFolder(const FilePath &folder, RunProgress progress,
                                                         int &errorNumber);
    /// Removes it when everything that was noted has ended; otherwise it stays for the next start.
    ~RewriteRecord();
    RewriteRecord(const RewriteRecord &) = delete;
    RewriteRecord &operator=(const RewriteRecord &) = delete;

    // Each returns 0, or errno when it couldn't be noted.
    /// The path of a backup that is about to be made. May not survive a power cut.
    int noteBackup(const FilePath &path, const FilePath &backup);
    /// The files that are rewritten next, once for a record. All of it is on the disk when the call returns;
    /// after a failure the record says of none of them that it was begun.
    int noteRewrites(const std::vector<Entry> &entries);
    /// What was noted with these backups is over: the file is complete on the disk, or wasn't touched. May
    /// not survive a power cut.
    int noteEnds(const std::vector<FilePath> &backups);
    /// Files of which the disk didn't confirm the new content: reading it back proves nothing.
    int noteFailedFlushes(const std::vector<FilePath> &backups);
    int noteProgress(RunProgress progress);

    /// What a record left behind says.
    struct Left
    {
        struct File : Entry
        {
            bool isBegun = false;     ///< false: only the backup was noted, the file wasn't touched
            bool isUnflushed = false; ///< what can be read may not be on the disk
        };
        QByteArray owner; ///< identity of the process that wrote it
        RunProgress progress;
        std::vector<File> files;    ///< those that have not ended
        bool lacksRewrites = false; ///< its list is closed, but isn't all there
    };
    /// What makes no sense is passed over, like a last line that was cut off.
    static Left read(const QByteArray &content);

    /// The same as noteFailedFlushes(), in a record left behind that is open for writing.
    static int noteFailedFlush(int leftRecord, const FilePath &backup);

    /// The folder for this user's records.
    static FilePath userFolder();

private:
    RewriteRecord(const FilePath &path, Descriptor descriptor, RecordLock lock);
    int _append(const QByteArray &lines);
    int _flush();

    std::mutex _mutex;
    FilePath _path;
    RecordLock _lock; ///< let go of behind the descriptor
    Descriptor _descriptor;
    qint64 _size = 0;
    QSet<FilePath> _openBackups;
};

/// Where this process keeps its records while the object lives. Without one nothing is recorded. Made in
/// main(), before there are other threads.
class RewriteRecordFolder
{
public:
    explicit RewriteRecordFolder(const FilePath &folder);
    ~RewriteRecordFolder();
    RewriteRecordFolder(const RewriteRecordFolder &) = delete;
    RewriteRecordFolder &operator=(const RewriteRecordFolder &) = delete;

    /// Empty where nothing is recorded.
    static FilePath current();
};

} // namespace tidemark
