#pragma once

#include "foundation/FilePath.h"
#include "foundation/WorkerThreads.h"
#include "replace/FileRewrite.h"
#include "replace/FlushedFileSystems.h"
#include "replace/ResolvedPaths.h"
#include "replace/RewriteRecord.h"
#include "replace/UndoStepWriter.h"

#include <QElapsedTimer>
#include <QHash>
#include <QSet>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace tidemark {

/// A run's dealings with the disk: it rewrites files, group by group, and owns their backups, their records,
/// and what is known of the files that this process has modified. Each group goes through these phases, and
/// none is begun before the one in front of it is on the disk: backups are made and new contents worked out,
/// on several threads, as files are added; the group's record is written; its files are changed; its backups
/// are deleted and its record removed. A flush of a group's backups is also that of the contents written
/// before it, and goes on while the group before is written and the next one prepared. Used on the main
/// thread, which gets all calls back.
class RewriteRun
{
public:
    /// What became of one file: `rewrite.problem()` and `rewrite.error()` tell why it failed.
    using Done = std::function<void(const FileRewrite &rewrite, bool isRewritten)>;
    /// Called again and again while the run waits for other threads; may deliver events.
    using WhileWaiting = std::function<void()>;
    /// Looked at before a group is written: true leaves the files that wait as they are, and `done` isn't
    /// called for them.
    using IsStopped = std::function<bool()>;

    /// How contents reach the disk.
    enum class Flushing {
        EachFile,   ///< each by itself: for a few
        FileSystem, ///< all that was written at once: for many. Where there is no call for it, as EachFile
    };

    /// `expectedFiles` is what a record left behind says of the run.
    RewriteRun(Flushing flushing, qint64 expectedFiles, WhileWaiting whileWaiting = {},
               IsStopped isStopped = {});
    /// Finishes what is left.
    ~RewriteRun();
    RewriteRun(const RewriteRun &) = delete;
    RewriteRun &operator=(const RewriteRun &) = delete;

    /// What is changed from now on is written to the step, ahead of each group.
    void setUndoStep(std::shared_ptr<UndoStepWriter> step) { _undoStep = std::move(step); }

    /// The path needn't be resolved yet. `done` is called in the order of the files, in this call or a later
    /// one of this object's. Groups begin with a single file and grow. A file that was rewritten in this run
    /// may come again, by whatever name, with the date it had before. Once the disk has failed no file is
    /// begun any more.
    void add(FileRewrite::Request request, Done done);
    /// Writes the files that were added so far.
    void flush();
    /// Leaves those that aren't written as they are, as with a stop.
    void abandonWaiting();

    /// What came up behind a file's `done`.
    struct LateProblem
    {
        FilePath path;
        FilePath backup; ///< holds the old content
        RewriteProblem problem;
        TDError error;
    };
    /// Writes what is left and deletes the last backups.
    std::vector<LateProblem> finish();

    /// Whether this process has rewritten the file, whose path is resolved. Main thread.
    static bool isPathToModifiedFile(const FilePath &path);

private:
    /// One file, by whatever name.
    using Identity = std::pair<quint64, quint64>; // device, inode
    /// A file's date before the run, and as the run left it.
    struct OwnDate
    {
        std::optional<FileDate> before;
        std::optional<FileDate> after;
    };
    struct Job
    {
        FileRewrite rewrite;
        Done done;
        Identity identity;
        std::optional<FileDate> dateBefore;
        Flush flush; ///< Yes: by itself, as it isn't flushed with its file system
        bool isPrepared = false;
        bool isRewritten = false;
    };
    using Jobs = std::vector<std::shared_ptr<Job>>;
    struct Group
    {
        std::shared_ptr<RewriteRecord> record;
        int recordError = 0; ///< why there is none
        int flushError = 0;  ///< of its backups
        int listError = 0;   ///< of the list of its rewrites in the record
        Jobs jobs;
        QSet<Identity> files;
        qint64 bytes = 0; ///< of its files before the run
    };

    Flush _flushFor(const FileRewrite::Request &request, dev_t device);
    Group _newGroup() const;
    void _startPreparing();
    void _prepareFile(Job &job, int recordError);
    void _useOwnDate(FileRewrite::Request &request, const Identity &identity) const;
    bool _isGroupFull() const;
    void _waitUntilPrepared();
    void _adaptGroupLimit();

    void _beginWriting();
    Group _takeFromTheWay();
    void _writeOnTheWay();
    void _tellDone(const Group &group);
    void _beginFlush(const Group &group);
    void _endFlush();
    bool _write(const Group &group);
    void _writeFile(Job &job, const Group &group);
    void _writeAlone(const std::shared_ptr<Job> &job);
    void _endFlushed();
    void _endGroup(const Group &group, int flushError);
    void _noteUnflushed(const Group &group);
    void _noteProgress();
    void _abandon(const Group &group);
    void _forEach(const Jobs &jobs, const std::function<void(Job &)> &step);
    void _wait(StepCounter &steps, int count);

    const Flushing _flushing;
    const bool _keepsBackups;
    WhileWaiting _whileWaiting;
    IsStopped _isStopped;
    ResolvedPaths _resolvedPaths;
    std::shared_ptr<UndoStepWriter> _undoStep;
    FlushedFileSystems _fileSystems;
    QHash<Identity, OwnDate> _ownDates; ///< of the files rewritten in this run

    Group _preparing;
    size_t _startedCount = 0; ///< of its files, those that threads have been given
    int _preparingTasks = 0;
    qsizetype _groupLimit = 1;
    QElapsedTimer _sinceLastGroup;
    std::atomic<bool> _isAbandoning = false;
    Group _onTheWay;                  ///< prepared; its backups are on the way to the disk
    std::vector<Group> _written;      ///< since the last flush began
    std::vector<Group> _beingFlushed; ///< written before that
    std::vector<Group> _flushed;      ///< their content is on the disk, and their backups are still there
    qint64 _bytesInFlushedBackups = 0;
    std::vector<LateProblem> _lateProblems;
    RunProgress _progress;
    std::atomic<int> _diskError = 0; ///< what ended the run

    StepCounter _preparedCount;
    StepCounter _flushedCount;
    int _flushError = 0; ///< of the last flush
    int _listError = 0;  ///< of the record's list behind it
    // Last: they end first.
    WorkerThreads _flushThread;
    WorkerThreads _threads;
};

} // namespace tidemark
