#pragma once

#include "foundation/FilePath.h"

#include <QList>

#include <vector>

namespace tidemark {

/// The files that a process was rewriting when it ended in the middle, found in the records it left behind.
/// Looking clears everything that needs no decision: backups of files that weren't touched, and those of
/// files that were completely written. Records of living processes aren't looked at, nor can two processes
/// look at the same one.
class InterruptedRewrites
{
public:
    struct File
    {
        FilePath path;
        FilePath backup; ///< holds the whole old content
    };

    /// Looks into the folder of records, which need not exist.
    explicit InterruptedRewrites(const FilePath &folder);
    /// Undecided files are found again the next time.
    ~InterruptedRewrites();
    InterruptedRewrites(const InterruptedRewrites &) = delete;
    InterruptedRewrites &operator=(const InterruptedRewrites &) = delete;

    /// Those that are neither as they were nor as they should be. By path.
    const QList<File> &files() const { return _files; }

    struct Failure
    {
        File file;
        int errorNumber = 0;
    };
    /// Puts the old content back into all of them and deletes their backups once that is on the disk. Those
    /// that failed stay in files(), with their backups.
    QList<Failure> putBack();
    /// The files stay as they are, and so do the backups beside them; nothing is asked again.
    void keep();

private:
    struct Record
    {
        FilePath path;
        int descriptor = -1; ///< holds the lock
    };

    void _lookInto(const FilePath &recordPath);
    void _removeRecords();

    std::vector<Record> _records; ///< those with undecided files
    QList<File> _files;
};

} // namespace tidemark
