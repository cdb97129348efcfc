#include "replace/RewriteRun.h"

#include "foundation/SignalOfFileSizeLimit.h"
#include "foundation/UserDefaults.h"
#include "replace/FileMetadata.h"

#include <QThread>

#include <algorithm>
#include <iterator>
#include <sys/stat.h>

namespace tidemark {

namespace {

constexpr qsizetype LARGEST_GROUP = 1024;
constexpr qsizetype GROUP_GROWTH = 4;
/// A group that took less is followed by a larger one, and one that took longer by a smaller one: a stop
/// waits for the group in hand.
constexpr qint64 SHORT_GROUP_MS = 400;
constexpr qint64 LONG_GROUP_MS = 1500;
/// Smaller groups are waited for: the first files are done soon, and a stop right after them finds the rest
/// untouched.
constexpr size_t SMALLEST_OVERLAPPING_GROUP = 16;
/// Backups take as much of the disk, new contents as much memory.
constexpr qint64 MOST_BYTES_IN_GROUP = 64 << 20;
/// File systems make files more slowly where some were deleted lately, so backups go many at a time.
constexpr qint64 MOST_BYTES_IN_FLUSHED_BACKUPS = 256 << 20;
constexpr size_t MOST_FLUSHED_GROUPS = 16;
constexpr size_t STEPS_AT_ONCE = 16;
constexpr std::chrono::milliseconds TIME_BETWEEN_CALLS(10);

#ifdef __linux__
constexpr bool CAN_FLUSH_FILE_SYSTEM = true;
#else
constexpr bool CAN_FLUSH_FILE_SYSTEM = false;
#endif

QSet<FilePath> &pathsToModifiedFiles()
{
    static QSet<FilePath> paths;
    return paths;
}

} // namespace

RewriteRun::RewriteRun(Flushing flushing, qint64 expectedFiles, WhileWaiting whileWaiting,
                       IsStopped isStopped)
    : _flushing(CAN_FLUSH_FILE_SYSTEM ? flushing : Flushing::EachFile),
      _keepsBackups(UserDefaults::standard().boolFor(BooleanSetting::CreateBackupBeforeReplacing)),
      _whileWaiting(std::move(whileWaiting)), _isStopped(std::move(isStopped)), _progress{0, expectedFiles},
      _flushThread(1),
      _threads(std::clamp(2 * QThread::idealThreadCount(), 4, 16)) // which wait for the disk half of the time
{
    ignoreSignalOfFileSizeLimit();
}

RewriteRun::~RewriteRun()
{
    (void)finish();
}

bool RewriteRun::isPathToModifiedFile(const FilePath &path)
{
    return pathsToModifiedFiles().contains(path);
}

// -- Preparing

void RewriteRun::add(FileRewrite::Request request, Done done)
{
    // What is taken back was resolved when it was changed: a link that leads elsewhere has come since.
    if (request.undone.empty())
        request.path = _resolvedPaths.resolving(request.path);
    else
        request.leadsElsewhere = _resolvedPaths.resolving(request.path) != request.path;
    request.isNoted = _undoStep && _undoStep->isOpen();
    const std::optional<FileDate> dateBefore = request.originalFileModificationDate;
    struct stat status = {};
    const bool isThere = ::stat(request.path.cString(), &status) == 0;
    const Identity identity(status.st_dev, status.st_ino);
    // The same file again: what was added before must be in it first.
    if (_preparing.files.contains(identity) || _onTheWay.files.contains(identity))
        flush();
    if (isThere)
        _useOwnDate(request, identity);
    const Flush flushOfFile = _flushFor(request, status.st_dev);
    if (_preparing.jobs.empty())
        _preparing = _newGroup();
    auto job = std::make_shared<Job>(Job{FileRewrite(std::move(request), _preparing.record), std::move(done),
                                         identity, dateBefore, flushOfFile});
    _preparing.jobs.push_back(job);
    if (isThere)
        _preparing.files.insert(identity);
    _preparing.bytes += status.st_size;
    if (_preparing.jobs.size() - _startedCount == STEPS_AT_ONCE)
        _startPreparing();
    if (_isGroupFull())
        _beginWriting();
}

/// A file is flushed by itself where its folder or its backup's can't be opened, or where it isn't on the
/// file system of its folder, as with one that is mounted alone.
Flush RewriteRun::_flushFor(const FileRewrite::Request &request, dev_t device)
{
    const auto kind = request.transientBackupFile ? BackupFile::Kind::Transient : BackupFile::Kind::Lasting;
    const bool isFlushedWithOthers = _flushing == Flushing::FileSystem &&
                                     _fileSystems.addFileSystemOf(request.path, device) &&
                                     _fileSystems.addFolder(BackupFile::folderFor(request.path, kind)) == 0;
    return isFlushedWithOthers ? Flush::No : Flush::Yes;
}

RewriteRun::Group RewriteRun::_newGroup() const
{
    Group group;
    if (const FilePath folder = RewriteRecordFolder::current(); !folder.isEmpty() && _diskError == 0)
        group.record = RewriteRecord::recordInFolder(folder, _progress, group.recordError);
    return group;
}

/// A file that comes again under another name was searched before this run rewrote it: gives the request the
/// date that the run left.
void RewriteRun::_useOwnDate(FileRewrite::Request &request, const Identity &identity) const
{
    const auto own = _ownDates.constFind(identity);
    if (own != _ownDates.cend() && request.originalFileModificationDate == own->before)
        request.originalFileModificationDate = own->after;
}

/// Hands the files that were added since the last call to the threads.
void RewriteRun::_startPreparing()
{
    const Jobs jobs(_preparing.jobs.begin() + qsizetype(_startedCount), _preparing.jobs.end());
    _startedCount = _preparing.jobs.size();
    ++_preparingTasks;
    _threads.start([this, jobs, recordError = _preparing.recordError] {
        for (const auto &job : jobs)
            _prepareFile(*job, recordError);
        _preparedCount.add();
    });
}

/// On one of the threads.
void RewriteRun::_prepareFile(Job &job, int recordError)
{
    // What is abandoned stays as it is, without a word.
    if (_isAbandoning)
        return;
    if (_diskError != 0)
        job.rewrite.refuse(RewriteProblem::NotBegun, _diskError);
    else if (recordError != 0)
        job.rewrite.refuse(RewriteProblem::NoRecord, recordError);
    else
        job.isPrepared = job.rewrite.prepare(job.flush);
}

bool RewriteRun::_isGroupFull() const
{
    return qsizetype(_preparing.jobs.size()) >= _groupLimit || _preparing.bytes >= MOST_BYTES_IN_GROUP;
}

void RewriteRun::_waitUntilPrepared()
{
    if (_startedCount < _preparing.jobs.size())
        _startPreparing();
    _wait(_preparedCount, std::exchange(_preparingTasks, 0));
    _startedCount = 0;
}

void RewriteRun::_adaptGroupLimit()
{
    const qint64 duration = _sinceLastGroup.isValid() ? _sinceLastGroup.elapsed() : 0;
    if (duration < SHORT_GROUP_MS)
        _groupLimit = std::min(_groupLimit * GROUP_GROWTH, LARGEST_GROUP);
    else if (duration > LONG_GROUP_MS)
        _groupLimit = std::max<qsizetype>(_groupLimit / 2, SMALLEST_OVERLAPPING_GROUP);
    _sinceLastGroup.start();
}

// -- Writing

void RewriteRun::flush()
{
    _beginWriting();
    // While the disk is waited for anyway.
    _endFlushed();
    _writeOnTheWay();
}

/// The group that was being added goes to the disk, while the one before, which is there, is written.
void RewriteRun::_beginWriting()
{
    if (_preparing.jobs.empty())
        return;
    _waitUntilPrepared();
    const Group ready = _takeFromTheWay();
    _onTheWay = std::exchange(_preparing, {});
    _adaptGroupLimit();
    _beginFlush(_onTheWay);
    if (_write(ready))
        _tellDone(ready);
    if (_bytesInFlushedBackups > MOST_BYTES_IN_FLUSHED_BACKUPS || _flushed.size() > MOST_FLUSHED_GROUPS)
        _endFlushed();
    const bool isDiskFull = std::any_of(_onTheWay.jobs.begin(), _onTheWay.jobs.end(),
                                        [](const auto &job) { return job->rewrite.lacksBackup(); });
    // On a full disk there may be no room for the backups of yet another group.
    if (isDiskFull || _onTheWay.jobs.size() < SMALLEST_OVERLAPPING_GROUP)
        _writeOnTheWay();
}

/// The group that was on its way to the disk, once its backups and its record are there, if there is one.
RewriteRun::Group RewriteRun::_takeFromTheWay()
{
    if (_onTheWay.jobs.empty())
        return {};
    _endFlush();
    Group group = std::exchange(_onTheWay, {});
    group.flushError = _flushError;
    group.listError = _listError;
    return group;
}

void RewriteRun::_writeOnTheWay()
{
    const Group group = _takeFromTheWay();
    if (!_write(group))
        return;
    for (const auto &job : group.jobs) {
        // The backups of other files may have taken up the space.
        if (job->rewrite.lacksBackup())
            _writeAlone(job);
    }
    _tellDone(group);
}

void RewriteRun::_tellDone(const Group &group)
{
    for (const auto &job : group.jobs) {
        if (_undoStep && (job->isRewritten || job->rewrite.problem() == RewriteProblem::NotOnDisk))
            _undoStep->noteDone(job->rewrite.matches());
        std::exchange(job->done, {})(job->rewrite, job->isRewritten);
    }
}

/// The backups of the group, what takes it back, and what was written before, on the way to the disk, and
/// then the group's record.
void RewriteRun::_beginFlush(const Group &group)
{
    std::vector<RewriteRecord::Entry> entries;
    std::vector<UndoEntry> undoEntries;
    std::vector<KeptBackup> keptBackups;
    for (const auto &job : group.jobs) {
        if (!job->isPrepared)
            continue;
        FileRewrite &rewrite = job->rewrite;
        rewrite.setBackupKept(_keepsBackups && !rewrite.isBackupTransient() &&
                              !isPathToModifiedFile(rewrite.path()));
        entries.push_back(rewrite.recordEntry());
        if (_undoStep)
            undoEntries.push_back(rewrite.takeUndoEntry());
        if (_undoStep && rewrite.isBackupKept())
            keptBackups.push_back(rewrite.keptBackup());
    }
    _flushThread.start([this, entries = std::move(entries), undoEntries = std::move(undoEntries),
                        keptBackups = std::move(keptBackups), record = group.record,
                        fileSystems = _fileSystems.descriptors(), devices = _fileSystems.devices()] {
        const bool isWhole = _flushing == Flushing::FileSystem;
        _listError = _undoStep ? _undoStep->append(undoEntries, keptBackups) : 0;
        _flushError = isWhole ? flushFileSystems(fileSystems) : 0;
        if (_undoStep && _listError == 0 && _flushError == 0)
            _listError = _undoStep->flush(isWhole ? devices : QList<quint64>());
        const bool isRecorded = record && !entries.empty() && _flushError == 0 && _listError == 0;
        if (isRecorded)
            _listError = record->noteRewrites(entries);
        _flushedCount.add();
    });
    _beingFlushed = std::exchange(_written, {});
}

void RewriteRun::_endFlush()
{
    _wait(_flushedCount, 1);
    if (_flushError != 0)
        _diskError = _flushError;
    for (Group &group : std::exchange(_beingFlushed, {})) {
        _bytesInFlushedBackups += group.bytes;
        // Where the flush failed the backups stay, and so do the records.
        if (_flushError != 0)
            _endGroup(group, _flushError);
        else
            _flushed.push_back(std::move(group));
    }
}

/// False when it stays as it is because the run was stopped.
bool RewriteRun::_write(const Group &group)
{
    if (!group.jobs.empty() && _isStopped && _isStopped()) {
        _abandon(group);
        return false;
    }
    Group prepared = group;
    std::erase_if(prepared.jobs, [](const auto &job) { return !job->isPrepared; });
    _forEach(prepared.jobs, [this, &group](Job &job) { _writeFile(job, group); });
    _noteUnflushed(prepared);
    std::erase_if(prepared.jobs, [](const auto &job) { return !job->isRewritten; });
    for (const auto &job : prepared.jobs) {
        pathsToModifiedFiles().insert(job->rewrite.path());
        OwnDate &own = _ownDates[job->identity];
        if (!own.before)
            own.before = job->dateBefore;
        own.after = job->rewrite.newModificationDate();
    }
    if (!prepared.jobs.empty())
        _written.push_back(std::move(prepared));
    return true;
}

/// On one of the threads.
void RewriteRun::_writeFile(Job &job, const Group &group)
{
    if (group.flushError != 0)
        job.rewrite.refuse(RewriteProblem::DiskFailure, group.flushError);
    else if (group.listError != 0)
        job.rewrite.refuse(RewriteProblem::NoRecord, group.listError);
    else if (_diskError != 0)
        job.rewrite.refuse(RewriteProblem::NotBegun, _diskError);
    else
        job.isRewritten = job.rewrite.carryOut(job.flush);
    if (job.rewrite.diskError() != 0)
        _diskError = job.rewrite.diskError();
}

/// A file that found no room for its backup, once the backups of others are gone.
void RewriteRun::_writeAlone(const std::shared_ptr<Job> &job)
{
    if ((_written.empty() && _flushed.empty()) || _diskError != 0)
        return;
    _beginFlush({});
    _endFlush();
    _endFlushed();
    Group alone = _newGroup();
    alone.jobs = {job};
    if (alone.recordError != 0)
        return;
    job->rewrite.setRecord(alone.record);
    _forEach(alone.jobs, [](Job &each) { each.isPrepared = each.rewrite.prepare(each.flush); });
    _onTheWay = std::move(alone);
    _beginFlush(_onTheWay);
    (void)_write(_takeFromTheWay());
}

// -- Ending

/// Deletes the backups of everything that is on the disk.
void RewriteRun::_endFlushed()
{
    _bytesInFlushedBackups = 0;
    for (const Group &group : std::exchange(_flushed, {}))
        _endGroup(group, 0);
    _noteProgress();
}

void RewriteRun::_endGroup(const Group &group, int flushError)
{
    _forEach(group.jobs, [flushError](Job &job) {
        if (flushError != 0)
            job.rewrite.noteFailedFlush(flushError);
        else
            (void)job.rewrite.finish();
    });
    std::vector<FilePath> ended;
    for (const auto &job : group.jobs) {
        const FileRewrite &rewrite = job->rewrite;
        if (rewrite.problem() == RewriteProblem::None)
            ended.push_back(rewrite.backup());
        else
            _lateProblems.push_back({rewrite.path(), rewrite.backup(), rewrite.problem(), rewrite.error()});
    }
    _progress.done += qint64(ended.size());
    if (group.record)
        (void)group.record->noteEnds(ended);
    _noteUnflushed(group);
}

void RewriteRun::_noteUnflushed(const Group &group)
{
    std::vector<FilePath> unflushed;
    for (const auto &job : group.jobs) {
        // Of a damaged one the old content may have been put back and not reached the disk.
        const RewriteProblem problem = job->rewrite.problem();
        if (problem == RewriteProblem::NotOnDisk || problem == RewriteProblem::Damaged)
            unflushed.push_back(job->rewrite.backup());
    }
    if (group.record && !unflushed.empty())
        (void)group.record->noteFailedFlushes(unflushed);
}

/// The records of ended groups are gone, and with them what they said of the progress.
void RewriteRun::_noteProgress()
{
    for (const Group *group : {&_onTheWay, &_preparing}) {
        if (group->record)
            (void)group->record->noteProgress(_progress);
    }
}

void RewriteRun::_abandon(const Group &group)
{
    _forEach(group.jobs, [](Job &job) { job.rewrite.abandon(); });
}

void RewriteRun::abandonWaiting()
{
    _isAbandoning = true;
    _waitUntilPrepared();
    _abandon(std::exchange(_preparing, {}));
    _isAbandoning = false;
    _abandon(_takeFromTheWay());
}

std::vector<RewriteRun::LateProblem> RewriteRun::finish()
{
    flush();
    if (_written.empty() && _flushed.empty())
        return std::exchange(_lateProblems, {});
    _beginFlush({});
    _endFlushed();
    _endFlush();
    _endFlushed();
    // So that no record of this run comes back after a power cut.
    const FilePath records = RewriteRecordFolder::current();
    if (_flushing == Flushing::FileSystem && !records.isEmpty())
        (void)flushFolder(records);
    return std::exchange(_lateProblems, {});
}

void RewriteRun::_forEach(const Jobs &jobs, const std::function<void(Job &)> &step)
{
    StepCounter done;
    int tasks = 0;
    for (size_t start = 0; start < jobs.size(); start += STEPS_AT_ONCE, ++tasks) {
        _threads.start([&jobs, &step, &done, start] {
            for (size_t index = start; index < std::min(jobs.size(), start + STEPS_AT_ONCE); ++index)
                step(*jobs[index]);
            done.add();
        });
    }
    _wait(done, tasks);
}

void RewriteRun::_wait(StepCounter &steps, int count)
{
    while (!steps.take(count, TIME_BETWEEN_CALLS)) {
        if (_whileWaiting)
            _whileWaiting();
    }
}

} // namespace tidemark
