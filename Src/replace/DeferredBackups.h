#pragma once

#include "foundation/FilePath.h"

#include <QHash>
#include <QList>

namespace tidemark {

/// While one exists, rewritten files aren't flushed to the disk one by one: backups that aren't to be kept
/// stay until all new content has been flushed at once, and are deleted then. Main thread only, one at a
/// time.
class DeferredBackups
{
public:
    DeferredBackups();
    /// Flushes what is left.
    ~DeferredBackups();
    DeferredBackups(const DeferredBackups &) = delete;
    DeferredBackups &operator=(const DeferredBackups &) = delete;

    /// The one in force, or null.
    static DeferredBackups *current();

    /// A rewritten file and its backup, which is empty when it is to be kept.
    void add(const FilePath &path, const FilePath &backup);
    /// True when so many wait that it is time to flush.
    bool isFull() const;
    /// Flushes the file systems concerned, then deletes the backups. Returns the files whose backup is still
    /// there, because flushing or deleting failed.
    QList<FilePath> flush();

private:
    struct Rewritten
    {
        FilePath path;
        FilePath backup;
    };
    bool _flushFileSystems() const;

    QList<Rewritten> _waiting;
    QHash<quint64, FilePath> _fileOnDevice; ///< one rewritten file for each file system
};

} // namespace tidemark
