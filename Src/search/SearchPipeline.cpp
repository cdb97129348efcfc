#include "search/SearchPipeline.h"

#include "foundation/PatientOpen.h"
#include "foundation/WorkerThreads.h"
#include "matching/SearchContext.h"

#include <algorithm>
#include <fcntl.h>
#include <utility>

namespace tidemark {

namespace {

/// Small enough that the first results come at once, large enough that handing over costs next to nothing.
constexpr size_t FILES_IN_BATCH = 32;
/// How far the workers run ahead of what is delivered: so many batches, and more where many work.
constexpr size_t FEWEST_OUTSTANDING = 24;
constexpr size_t OUTSTANDING_FOR_EACH = 3;
constexpr rlim_t FEWEST_SHARED_FOLDERS = 8;
constexpr rlim_t MOST_SHARED_FOLDERS = 256;
constexpr rlim_t DESCRIPTORS_FOR_EACH_FOLDER = 4;

std::atomic<int> sharedFolders = 0;

int mostSharedFolders()
{
    return int(std::clamp(mostDescriptors() / DESCRIPTORS_FOR_EACH_FOLDER, FEWEST_SHARED_FOLDERS,
                          MOST_SHARED_FOLDERS));
}

} // namespace

std::shared_ptr<SharedFolder> SharedFolder::duplicate(int descriptor)
{
    if (sharedFolders >= mostSharedFolders())
        return nullptr;
    Descriptor copy(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
    if (!copy.isOpen())
        return nullptr;
    ++sharedFolders;
    return std::shared_ptr<SharedFolder>(new SharedFolder(std::move(copy)));
}

SharedFolder::~SharedFolder()
{
    (void)_descriptor.close();
    --sharedFolders;
}

bool SharedFolder::areFew()
{
    return sharedFolders <= mostSharedFolders() / 2;
}

SearchPipeline::SearchPipeline(const TeamSize &team, const TDFindPattern &pattern,
                               const std::atomic<bool> &shouldStop, SearchFile searchFile,
                               SearchDelivery delivery)
    : _pattern(pattern), _shouldStop(shouldStop), _searchFile(std::move(searchFile)),
      _delivery(std::move(delivery)), _team(team), _isTeamFixed(team.isFixed()),
      _filling(std::make_shared<Batch>()), _ownContext(std::make_unique<SearchContext>(pattern))
{
    Lock lock(_mutex);
    _use = ProcessUse::now();
    _fillTeam(lock);
}

SearchPipeline::~SearchPipeline()
{
    {
        const std::lock_guard lock(_mutex);
        _isEnding = true;
        _outstanding.clear();
        _firstUntaken = 0;
    }
    _workAdded.notify_all();
    _teamGrew.notify_all();
    // Nobody adds to them any more.
    for (std::thread &worker : _workers)
        worker.join();
}

/// With fewer threads than it takes the search takes longer; its own thread helps wherever it would wait.
void SearchPipeline::_fillTeam(Lock &)
{
    while (!_isEnding && int(_workers.size()) + 1 < _team.current()) {
        const int number = int(_workers.size()) + 1;
        if (!startThread(_workers, [this, number] { _work(number); }))
            return;
    }
}

void SearchPipeline::_work(int number)
{
    SearchContext context(_pattern);
    Lock lock(_mutex);
    while (_awaitWork(lock, number)) {
        if (_foldersAhead.hasNext()) {
            _readFolderAhead(lock);
            _look(lock);
        } else if (const SharedBatch batch = _takeWaiting(lock)) {
            _workOnBatch(lock, *batch, context);
            _batchDone.notify_one();
        }
    }
}

/// False when there won't be any more. What is there may be gone by then.
bool SearchPipeline::_awaitWork(Lock &lock, int number)
{
    while (!_isEnding) {
        if (number >= _team.current()) {
            // What woke this one is for another.
            _workAdded.notify_one();
            _teamGrew.wait(lock);
        } else if (_foldersAhead.hasNext() || _firstUntaken < _outstanding.size()) {
            return true;
        } else {
            _workAdded.wait(lock);
        }
    }
    return false;
}

void SearchPipeline::_readFolderAhead(Lock &lock)
{
    const QByteArray path = _foldersAhead.takeNext();
    const bool withHidden = _withHiddenFolders;
    if (_foldersAhead.hasNext())
        _workAdded.notify_one();
    lock.unlock();
    const QByteArrayList inside = _shouldStop ? QByteArrayList() : FoldersAhead::read(path, withHidden);
    lock.lock();
    _foldersAhead.didRead(path, inside);
    if (_foldersAhead.hasNext())
        _workAdded.notify_one();
}

void SearchPipeline::_workOnBatch(Lock &lock, Batch &batch, SearchContext &context)
{
    lock.unlock();
    _run(batch, context);
    lock.lock();
    batch.state = Batch::State::Done;
    _look(lock);
}

SearchPipeline::SharedBatch SearchPipeline::_takeWaiting(Lock &)
{
    if (_firstUntaken == _outstanding.size())
        return nullptr;
    SharedBatch batch = _outstanding[_firstUntaken++];
    batch->state = Batch::State::Running;
    return batch;
}

/// On a slow disk a batch takes much longer than it may take until more threads come.
void SearchPipeline::_run(Batch &batch, SearchContext &context)
{
    const auto dueFrom = [](Clock::time_point now) { return now + TeamSize::INTERVAL; };
    Clock::time_point due = _isTeamFixed ? Clock::time_point::max() : dueFrom(Clock::now());
    size_t index = 0;
    const HandOverPart handOver = [&](FoundPart part) { _takePart(batch, index, std::move(part)); };
    for (; index < batch.jobs.size(); ++index) {
        if (_shouldStop)
            return;
        _searchJob(batch.jobs[index], context, handOver);
        if (_isTeamFixed || Clock::now() < due)
            continue;
        Lock lock(_mutex);
        _look(lock);
        due = dueFrom(Clock::now());
    }
}

void SearchPipeline::_look(Lock &lock)
{
    const Clock::time_point now = Clock::now();
    if (_isTeamFixed || now - _lookedAt < TeamSize::INTERVAL)
        return;
    const ProcessUse use = ProcessUse::now();
    const int before = _team.current();
    _team.look({now - _lookedAt, use.processorTime - _use.processorTime, use.blocksRead > _use.blocksRead});
    _lookedAt = now;
    _use = use;
    _readsFoldersAhead = _team.isGrown();
    if (_team.current() <= before)
        return;
    _fillTeam(lock);
    _teamGrew.notify_all();
}

size_t SearchPipeline::_mostOutstanding() const
{
    return std::max(FEWEST_OUTSTANDING, OUTSTANDING_FOR_EACH * size_t(_team.current()));
}

void SearchPipeline::willWalkScope(bool withHiddenFolders)
{
    const std::lock_guard lock(_mutex);
    _foldersAhead.clear();
    _withHiddenFolders = withHiddenFolders;
}

void SearchPipeline::didListFolder(const QByteArray &path, const QByteArrayList &foldersToCome)
{
    const std::lock_guard lock(_mutex);
    _foldersAhead.pass(path);
    _foldersAhead.add(foldersToCome);
    if (_foldersAhead.hasNext())
        _workAdded.notify_one();
}

/// The owner may be the one who searches this batch, and then has to deliver it as well.
void SearchPipeline::_takePart(Batch &batch, size_t job, FoundPart part)
{
    Lock lock(_mutex);
    batch.parts.emplace_back(job, std::move(part));
    if (std::this_thread::get_id() != _owner) {
        _batchDone.notify_one();
        return;
    }
    while (!_shouldStop && _deliverNext(lock)) {
    }
}

void SearchPipeline::_searchJob(SearchJob &job, SearchContext &context, const HandOverPart &handOver)
{
    if (job.folderErrorNumber == 0)
        job.result = _searchFile(job.file, context, handOver, job.error);
    job.folder.reset();
}

void SearchPipeline::add(SearchJob job)
{
    _filling->jobs.push_back(std::move(job));
    if (_filling->jobs.size() < FILES_IN_BATCH)
        return;
    _pushBatch();
    _deliverUntil(_window);
}

void SearchPipeline::_pushBatch()
{
    {
        Lock lock(_mutex);
        _outstanding.push_back(std::move(_filling));
        _look(lock);
        _window = _mostOutstanding();
    }
    _workAdded.notify_one();
    _filling = std::make_shared<Batch>();
    _filling->jobs.reserve(FILES_IN_BATCH);
}

void SearchPipeline::finish()
{
    _pushBatch();
    _deliverUntil(0);
}

void SearchPipeline::giveBackFolders()
{
    _pushBatch();
    _deliverUntil(0, SharedFolder::areFew);
}

void SearchPipeline::searchAtOnce(SearchJob job)
{
    finish();
    if (_shouldStop)
        return;
    _searchJob(job, *_ownContext, [&](const FoundPart &part) { _delivery.part(job, part); });
    _delivery.outcome(job);
}

/// Delivers what is done from the front on; while more than so many are outstanding and it isn't enough yet,
/// works or waits.
void SearchPipeline::_deliverUntil(size_t mostOutstanding, bool (*isEnough)())
{
    Lock lock(_mutex);
    while (!_shouldStop && !_outstanding.empty() && (isEnough == nullptr || !isEnough())) {
        if (_deliverNext(lock))
            continue;
        if (_outstanding.size() <= mostOutstanding)
            return;
        if (const SharedBatch batch = _takeWaiting(lock))
            _workOnBatch(lock, *batch, *_ownContext);
        else
            _batchDone.wait(lock);
    }
}

/// False when nothing is at the front that could be delivered.
bool SearchPipeline::_deliverNext(Lock &lock)
{
    if (_outstanding.empty())
        return false;
    const SharedBatch batch = _outstanding.front();
    const bool isDone = batch->state == Batch::State::Done;
    const std::vector<std::pair<size_t, FoundPart>> parts = std::exchange(batch->parts, {});
    if (!isDone && parts.empty())
        return false;
    if (isDone) {
        _outstanding.pop_front();
        --_firstUntaken;
    }
    lock.unlock();
    _deliverParts(*batch, parts);
    if (isDone)
        _deliverJobs(*batch, batch->jobs.size());
    lock.lock();
    return true;
}

void SearchPipeline::_deliverParts(Batch &batch, const std::vector<std::pair<size_t, FoundPart>> &parts)
{
    for (const auto &part : parts) {
        _deliverJobs(batch, part.first);
        if (!_shouldStop)
            _delivery.part(batch.jobs[part.first], part.second);
    }
}

void SearchPipeline::_deliverJobs(Batch &batch, size_t end)
{
    for (; batch.delivered < end && !_shouldStop; ++batch.delivered)
        _delivery.outcome(batch.jobs[batch.delivered]);
}

} // namespace tidemark
