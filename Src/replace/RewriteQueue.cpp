#include "replace/RewriteQueue.h"

#include "foundation/FileSystemCalls.h"
#include "replace/TDFileModifier.h"

#include <QHash>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <fcntl.h>
#include <sys/stat.h>

namespace tidemark {

namespace {

constexpr qsizetype LARGEST_GROUP = 2048;
constexpr qsizetype GROUP_GROWTH = 4;
/// Smaller groups are waited for: the first files are done soon, and a stop right after them finds the rest
/// untouched.
constexpr size_t SMALLEST_OVERLAPPING_GROUP = 16;
/// Backups take as much of the disk, new contents as much memory.
constexpr qint64 MOST_BYTES_IN_GROUP = 64 << 20;
constexpr size_t STEPS_AT_ONCE = 16;
constexpr std::chrono::milliseconds TIME_BETWEEN_CALLS(10);

#ifdef __linux__
constexpr Flush FLUSH_OF_EACH_FILE = Flush::No;
#else
// Without a call that flushes a whole file system.
constexpr Flush FLUSH_OF_EACH_FILE = Flush::Yes;
#endif

int flushFileSystemOf(const FilePath &path)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    const int descriptor = calls.open(path.cString(), O_RDONLY | O_NONBLOCK | O_CLOEXEC, 0);
    if (descriptor < 0)
        return errno;
    const int error = calls.syncFileSystem(descriptor) == 0 ? 0 : errno;
    (void)calls.close(descriptor);
    return error;
}

/// One path on each file system that is to be flushed.
class FileSystems
{
public:
    void add(const FilePath &path, dev_t device) { _pathOnDevice.insert(device, path); }
    void add(const FilePath &path)
    {
        struct stat status;
        if (::stat(path.cString(), &status) == 0)
            add(path, status.st_dev);
    }
    int flush() const
    {
        int error = 0;
        for (const FilePath &path : _pathOnDevice)
            error = error != 0 ? error : flushFileSystemOf(path);
        return error;
    }

private:
    QHash<quint64, FilePath> _pathOnDevice;
};

} // namespace

RewriteQueue::RewriteQueue(WhileWaiting whileWaiting, IsStopped isStopped)
    : _whileWaiting(std::move(whileWaiting)), _isStopped(std::move(isStopped)), _flushThread(1),
      _threads(std::clamp(2 * QThread::idealThreadCount(), 4, 16)) // which wait for the disk half of the time
{}

RewriteQueue::~RewriteQueue()
{
    (void)finish();
}

void RewriteQueue::add(FileRewrite::Request request, Done done)
{
    request.path = _resolvedPaths.resolving(request.path);
    const FilePath path = request.path;
    // The same file again: what was added before must be in it first.
    if (_preparingPaths.contains(path) || _flushingPaths.contains(path))
        flush();
    auto job = std::make_shared<Job>(Job{FileRewrite(std::move(request)), std::move(done)});
    _preparing.push_back(job);
    _preparingPaths.insert(path);
    struct stat status;
    if (::stat(path.cString(), &status) == 0)
        _preparingBytes += status.st_size;
    _threads.start([this, job = job.get()] {
        job->isPrepared = job->rewrite.prepare(FLUSH_OF_EACH_FILE);
        _preparedCount.add();
    });
    if (_isGroupFull())
        _beginWriting();
}

bool RewriteQueue::_isGroupFull() const
{
    return qsizetype(_preparing.size()) >= _groupLimit || _preparingBytes >= MOST_BYTES_IN_GROUP;
}

void RewriteQueue::_waitUntilPrepared()
{
    _wait(_preparedCount, int(_preparing.size()));
    _preparingBytes = 0;
}

void RewriteQueue::flush()
{
    _beginWriting();
    _endWriting();
}

/// The group that was being added goes to the disk.
void RewriteQueue::_beginWriting()
{
    _endWriting();
    if (_preparing.empty())
        return;
    _waitUntilPrepared();
    _flushing = std::exchange(_preparing, {});
    _flushingPaths = std::exchange(_preparingPaths, {});
    _groupLimit = std::min(_groupLimit * GROUP_GROWTH, LARGEST_GROUP);
    _beginFlush(_flushing);
    const bool isDiskFull = std::any_of(_flushing.begin(), _flushing.end(),
                                        [](const auto &job) { return job->rewrite.lacksBackup(); });
    // On a full disk there may be no room for the backups of yet another group.
    if (isDiskFull || _flushing.size() < SMALLEST_OVERLAPPING_GROUP)
        _endWriting();
}

/// Writes the group that is on its way to the disk, once its backups are there.
void RewriteQueue::_endWriting()
{
    if (_flushing.empty())
        return;
    _endFlush();
    if (_isStopped && _isStopped()) {
        _abandonFlushing();
        return;
    }
    const Group group = std::exchange(_flushing, {});
    _write(group);
    for (const auto &job : group) {
        // The backups of other files may have taken up the space.
        if (job->rewrite.lacksBackup())
            _writeAlone(job);
    }
    _flushingPaths.clear();
    for (const auto &job : group)
        job->done(job->rewrite, job->isRewritten);
}

void RewriteQueue::_abandonFlushing()
{
    for (const auto &job : std::exchange(_flushing, {}))
        job->rewrite.abandon();
    _flushingPaths.clear();
}

void RewriteQueue::abandonWaiting()
{
    _waitUntilPrepared();
    for (const auto &job : std::exchange(_preparing, {}))
        job->rewrite.abandon();
    _preparingPaths.clear();
    if (!_flushing.empty()) {
        _endFlush();
        _abandonFlushing();
    }
}

QList<FilePath> RewriteQueue::finish()
{
    flush();
    if (!_written.empty()) {
        _beginFlush({});
        _endFlush();
    }
    return std::exchange(_backupsLeft, {});
}

/// The backups of the group, and what was written before, on the way to the disk.
void RewriteQueue::_beginFlush(const Group &group)
{
    std::vector<RewriteRecord::Entry> entries;
    for (const auto &job : group) {
        if (!job->isPrepared)
            continue;
        FileRewrite &rewrite = job->rewrite;
        rewrite.setBackupKept(TDFileModifier::keepsBackupOfFile(rewrite.path(), rewrite.isBackupTransient()));
        entries.push_back(rewrite.recordEntry());
    }
    FileSystems fileSystems;
    for (const auto &job : _written)
        fileSystems.add(job->rewrite.path(), job->rewrite.device());
    _flushThread.start([this, entries = std::move(entries), fileSystems = std::move(fileSystems)]() mutable {
        if (RewriteRecord *record = RewriteRecord::current())
            record->noteRewrites(entries);
        for (const RewriteRecord::Entry &entry : entries)
            fileSystems.add(entry.backup);
        _flushError = FLUSH_OF_EACH_FILE == Flush::Yes ? 0 : fileSystems.flush();
        _flushedCount.add();
    });
}

void RewriteQueue::_endFlush()
{
    _wait(_flushedCount, 1);
    _deleteBackupsOfWritten();
}

void RewriteQueue::_write(const Group &group)
{
    const int error = _flushError;
    Group prepared;
    std::copy_if(group.begin(), group.end(), std::back_inserter(prepared),
                 [](const auto &job) { return job->isPrepared; });
    _forEach(prepared, [error](Job &job) {
        if (error != 0)
            job.rewrite.refuse(error);
        else
            job.isRewritten = job.rewrite.carryOut(FLUSH_OF_EACH_FILE);
    });
    for (const auto &job : prepared) {
        if (!job->isRewritten)
            continue;
        TDFileModifier::notePathToModifiedFile(job->rewrite.path());
        _written.push_back(job);
    }
}

void RewriteQueue::_writeAlone(const std::shared_ptr<Job> &job)
{
    if (_written.empty())
        return;
    _beginFlush({});
    _endFlush();
    _forEach({job}, [](Job &alone) { alone.isPrepared = alone.rewrite.prepare(FLUSH_OF_EACH_FILE); });
    _beginFlush({job});
    _endFlush();
    _write({job});
}

/// After the flush of their contents; where that failed the backups stay.
void RewriteQueue::_deleteBackupsOfWritten()
{
    std::vector<FilePath> ended;
    const bool isFlushed = _flushError == 0;
    _forEach(_written, [isFlushed](Job &job) { job.isRewritten = isFlushed && job.rewrite.finish(); });
    for (const auto &job : _written) {
        if (job->isRewritten || job->rewrite.isBackupKept())
            ended.push_back(job->rewrite.backup());
        else
            _backupsLeft << job->rewrite.path();
    }
    if (RewriteRecord *record = RewriteRecord::current())
        record->noteEnds(ended);
    _written.clear();
}

void RewriteQueue::_forEach(const Group &group, const std::function<void(Job &)> &step)
{
    StepCounter done;
    int tasks = 0;
    for (size_t start = 0; start < group.size(); start += STEPS_AT_ONCE, ++tasks) {
        _threads.start([&group, &step, &done, start] {
            for (size_t index = start; index < std::min(group.size(), start + STEPS_AT_ONCE); ++index)
                step(*group[index]);
            done.add();
        });
    }
    _wait(done, tasks);
}

void RewriteQueue::_wait(StepCounter &steps, int count)
{
    while (!steps.take(count, TIME_BETWEEN_CALLS)) {
        if (_whileWaiting)
            _whileWaiting();
    }
}

} // namespace tidemark
