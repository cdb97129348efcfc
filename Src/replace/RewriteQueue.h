#pragma once

#include "foundation/FilePath.h"
#include "replace/FileRewrite.h"
#include "replace/ResolvedPaths.h"
#include "foundation/WorkerThreads.h"

#include <QList>
#include <QSet>

#include <functional>
#include <memory>
#include <vector>

namespace tidemark {

/// Rewrites many files, group by group, each group in three phases: backups and new contents are prepared on
/// several threads as the files are added; one flush brings the group's backups, and the contents of the
/// group before, to the disk while the next group is prepared; then the group's files are written and the
/// backups of the group before deleted. So no file is touched before its backup is safe, and no backup
/// deleted before the content is. Used on the main thread, which gets all calls back.
class RewriteQueue
{
public:
    /// What became of one file. `rewrite.error()` tells why it failed.
    using Done = std::function<void(const FileRewrite &rewrite, bool isRewritten)>;
    /// Called again and again while the queue waits for other threads; may deliver events.
    using WhileWaiting = std::function<void()>;

    /// Looked at before a group is written: true leaves the files that wait as they are, and `done` isn't
    /// called for them.
    using IsStopped = std::function<bool()>;

    explicit RewriteQueue(WhileWaiting whileWaiting = {}, IsStopped isStopped = {});
    /// Finishes what is left.
    ~RewriteQueue();
    RewriteQueue(const RewriteQueue &) = delete;
    RewriteQueue &operator=(const RewriteQueue &) = delete;

    /// The path needn't be resolved yet. `done` is called in the order of the files, in this call or a later
    /// one of this object's. Groups begin with a single file and grow.
    void add(FileRewrite::Request request, Done done);
    /// Writes the files that were added so far.
    void flush();
    /// Leaves those that aren't written as they are, as with a stop.
    void abandonWaiting();
    /// Writes what is left and deletes the last backups. Returns the files whose backup is still there
    /// although it shouldn't, because flushing or deleting it failed; their new content is in place.
    QList<FilePath> finish();

private:
    struct Job
    {
        FileRewrite rewrite;
        Done done;
        bool isPrepared = false;
        bool isRewritten = false;
    };
    using Group = std::vector<std::shared_ptr<Job>>;

    bool _isGroupFull() const;
    bool _isWaiting(const FilePath &path) const;
    void _waitUntilPrepared();
    void _beginWriting();
    void _endWriting();
    void _abandonFlushing();
    void _write(const Group &group);
    void _writeAlone(const std::shared_ptr<Job> &job);
    void _beginFlush(const Group &prepared);
    void _endFlush();
    void _deleteBackupsOfWritten();
    void _forEach(const Group &group, const std::function<void(Job &)> &step);
    void _wait(StepCounter &steps, int count);

    WhileWaiting _whileWaiting;
    IsStopped _isStopped;
    ResolvedPaths _resolvedPaths;

    Group _preparing;
    QSet<FilePath> _preparingPaths;
    qint64 _preparingBytes = 0;
    qsizetype _groupLimit = 1;
    Group _flushing; ///< prepared; their backups are on the way to the disk
    QSet<FilePath> _flushingPaths;
    Group _written; ///< their content isn't known to be on the disk
    QList<FilePath> _backupsLeft;

    StepCounter _preparedCount;
    StepCounter _flushedCount;
    int _flushError = 0; ///< of the last flush
    // Last: they end first.
    WorkerThreads _flushThread;
    WorkerThreads _threads;
};

} // namespace tidemark
