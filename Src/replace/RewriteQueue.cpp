#include "replace/RewriteQueue.h"

#include "foundation/FileSystemCalls.h"
#include "replace/TDFileModifier.h"

#include <QHash>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace tidemark {

namespace {

constexpr qsizetype LARGEST_GROUP = 2048;
constexpr qsizetype GROUP_GROWTH = 4;
/// Backups take as much of the disk, new contents as much memory.
constexpr qint64 MOST_BYTES_IN_GROUP = 128 << 20;
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

/// One of the paths for each file system.
class FileSystems
{
public:
    void add(const FilePath &path)
    {
        struct stat status;
        if (::stat(path.cString(), &status) == 0)
            _pathOnDevice.insert(status.st_dev, path);
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

RewriteQueue::RewriteQueue(WhileWaiting whileWaiting)
    : _whileWaiting(std::move(whileWaiting)), _threads(std::clamp(QThread::idealThreadCount(), 2, 8))
{}

RewriteQueue::~RewriteQueue()
{
    (void)finish();
}

void RewriteQueue::add(FileRewrite::Request request, Done done)
{
    auto job = std::make_shared<Job>(Job{FileRewrite(std::move(request)), std::move(done)});
    const FilePath path = job->rewrite.path();
    // The same file again: what was added before must be in it first.
    if (_preparingPaths.contains(path))
        flush();
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
        flush();
}

bool RewriteQueue::_isGroupFull() const
{
    return qsizetype(_preparing.size()) >= _groupLimit || _preparingBytes >= MOST_BYTES_IN_GROUP;
}

void RewriteQueue::_waitUntilPrepared()
{
    _wait(_preparedCount, int(_preparing.size()));
    _preparingPaths.clear();
    _preparingBytes = 0;
}

void RewriteQueue::flush()
{
    if (_preparing.empty())
        return;
    _waitUntilPrepared();
    const Group group = std::exchange(_preparing, {});
    _write(group);
    for (const auto &job : group) {
        // The backups of other files may have taken up the space.
        if (job->rewrite.lacksBackup())
            _writeAlone(job);
    }
    for (const auto &job : group)
        job->done(job->rewrite, job->isRewritten);
    _groupLimit = std::min(_groupLimit * GROUP_GROWTH, LARGEST_GROUP);
}

void RewriteQueue::abandonWaiting()
{
    _waitUntilPrepared();
    for (const auto &job : std::exchange(_preparing, {}))
        job->rewrite.abandon();
}

QList<FilePath> RewriteQueue::finish()
{
    flush();
    if (!_written.empty())
        _deleteBackupsOfWritten(_bringToDisk({}) == 0);
    return std::exchange(_backupsLeft, {});
}

void RewriteQueue::_write(const Group &group)
{
    Group prepared;
    std::vector<RewriteRecord::Entry> entries;
    for (const auto &job : group) {
        if (!job->isPrepared)
            continue;
        FileRewrite &rewrite = job->rewrite;
        rewrite.setBackupKept(TDFileModifier::keepsBackupOfFile(rewrite.path(), rewrite.isBackupTransient()));
        entries.push_back(rewrite.recordEntry());
        prepared.push_back(job);
    }
    if (prepared.empty())
        return;
    const int error = _bringToDisk(entries);
    _deleteBackupsOfWritten(error == 0);
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
    _deleteBackupsOfWritten(_bringToDisk({}) == 0);
    _forEach({job}, [](Job &alone) { alone.isPrepared = alone.rewrite.prepare(FLUSH_OF_EACH_FILE); });
    _write({job});
}

int RewriteQueue::_bringToDisk(const std::vector<RewriteRecord::Entry> &prepared)
{
    int error = 0;
    StepCounter done;
    _threads.start([&] {
        if (RewriteRecord *record = RewriteRecord::current())
            record->noteRewrites(prepared);
        FileSystems fileSystems;
        for (const RewriteRecord::Entry &entry : prepared)
            fileSystems.add(entry.backup);
        for (const auto &job : _written)
            fileSystems.add(job->rewrite.path());
        error = FLUSH_OF_EACH_FILE == Flush::Yes ? 0 : fileSystems.flush();
        done.add();
    });
    _wait(done, 1);
    return error;
}

void RewriteQueue::_deleteBackupsOfWritten(bool isFlushed)
{
    std::vector<FilePath> ended;
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
