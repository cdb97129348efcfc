#pragma once

#include "foundation/Descriptor.h"
#include "foundation/FilePath.h"
#include "replace/RewriteRecord.h"

#include <QHash>
#include <QList>

#include <optional>
#include <vector>

namespace tidemark {

class OpenRegularFile;

/// The files that a process was rewriting when it ended in the middle, found in the records it left behind.
/// What became of each is told from its content: the new one, the old one, or neither. Looking clears
/// everything that needs no decision: backups of files that weren't touched, and those of files that were
/// completely written. Nothing is followed, waited for or changed that isn't the regular file it was. Records
/// of living processes aren't looked at, nor can two processes look at the same one. One thread at a time.
class InterruptedRewrites
{
public:
    enum class State {
        Damaged,        ///< neither the old content nor the new one; the backup holds the old one
        UnusableBackup, ///< the same, but the backup is missing or holds something else
        Moved,          ///< another file, or none, is where it was
    };
    struct File
    {
        FilePath path;
        FilePath backup;
        State state = State::Damaged;
    };

    /// Looks into the folder of records, which need not exist. Reads the files that they name.
    explicit InterruptedRewrites(const FilePath &folder);
    /// Undecided files are found again the next time.
    ~InterruptedRewrites();
    InterruptedRewrites(const InterruptedRewrites &) = delete;
    InterruptedRewrites &operator=(const InterruptedRewrites &) = delete;

    /// Those to be told about. By path.
    const QList<File> &files() const { return _files; }
    /// Of the runs that were cut short; no files in all when none was.
    RunProgress progress() const { return _progress; }

    /// The processes of these runs, for UndoJournal::lastStepOf().
    QList<QByteArray> ownersOfRunsCutShort() const;

    struct Failure
    {
        File file;
        int errorNumber = 0;
    };
    /// Puts the old content back into all damaged files. What stands in each now is kept as a new backup
    /// beside it; the backup with the old content goes once that is on the disk. Those that failed, and those
    /// that couldn't be looked at, are found again; nothing else is asked again.
    QList<Failure> putBack();
    /// The files stay as they are, and so do the backups beside them; nothing is asked again but what
    /// couldn't be looked at.
    void keep();

private:
    struct Record
    {
        FilePath path;
        RecordLock lock; ///< let go of behind the descriptor
        Descriptor descriptor;
    };
    using Entry = RewriteRecord::Left::File;

    /// A file that holds what it held or was to hold.
    struct Whole
    {
        FilePath path;
        size_t first = 0; ///< of its rewrites, the one that began the chain which led there
        size_t last = 0;  ///< the last one that found or left that
        ContentDigest now;
        ino_t inode = 0;
        bool isFlushedWithOthers = false;
    };

    void _lookInto(const FilePath &recordPath);
    void _lookAtUnbegun(const Entry &entry, bool lacksRewrites);
    void _decide(const FilePath &path, const std::vector<Entry> &entries);
    void _settleWhole();
    bool _isOnDisk(const Whole &whole, bool areOthersFlushed) const;
    void _clearBackups(const Whole &whole);
    void _decideHalf(const OpenRegularFile &file, const std::optional<ContentDigest> &now,
                     const FilePath &path, const std::vector<Entry> &entries);
    void _noteFailedFlush(const FilePath &backup);
    void _tellDamaged(const FilePath &path, const std::vector<Entry> &entries);
    void _removeRecords();

    std::vector<Record> _records;
    QHash<FilePath, std::vector<Entry>> _begun; ///< by path, each in the order of the records
    std::vector<Whole> _whole;
    QHash<FilePath, Entry> _damaged; ///< what is put back, by path
    QList<File> _files;
    QHash<FilePath, QByteArray> _owners;     ///< by backup
    QHash<FilePath, size_t> _recordOfBackup; ///< its index
    QHash<QByteArray, RunProgress> _progressOfOwners;
    RunProgress _progress;
    bool _isUncertain = false; ///< something couldn't be looked at: the records stay
};

} // namespace tidemark
