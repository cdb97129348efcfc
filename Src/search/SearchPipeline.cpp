#include "search/SearchPipeline.h"

#include "foundation/PatientOpen.h"
#include "foundation/WorkerThreads.h"
#include "matching/SearchContext.h"

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace tidemark {

namespace {

/// Small enough that the first results come at once, large enough that handing over costs next to nothing.
constexpr size_t FILES_IN_BATCH = 32;
/// How far the workers run ahead of what is delivered.
constexpr size_t MOST_OUTSTANDING = 24;
constexpr rlim_t FEWEST_SHARED_FOLDERS = 8;
constexpr rlim_t MOST_SHARED_FOLDERS = 256;
constexpr rlim_t SHARE_OF_DESCRIPTORS = 4;

std::atomic<int> sharedFolders = 0;

int mostSharedFolders()
{
    return int(
        std::clamp(mostDescriptors() / SHARE_OF_DESCRIPTORS, FEWEST_SHARED_FOLDERS, MOST_SHARED_FOLDERS));
}

} // namespace

std::shared_ptr<SharedFolder> SharedFolder::duplicate(int descriptor)
{
    if (sharedFolders >= mostSharedFolders())
        return nullptr;
    const int copy = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    if (copy < 0)
        return nullptr;
    ++sharedFolders;
    return std::shared_ptr<SharedFolder>(new SharedFolder(copy));
}

SharedFolder::~SharedFolder()
{
    (void)::close(_descriptor);
    --sharedFolders;
}

bool SharedFolder::areFew()
{
    return sharedFolders <= mostSharedFolders() / 2;
}

SearchPipeline::SearchPipeline(int threads, const TDFindPattern &pattern, const std::atomic<bool> &shouldStop,
                               SearchFile searchFile, std::function<void(const SearchJob &)> deliver)
    : _pattern(pattern), _shouldStop(shouldStop), _searchFile(std::move(searchFile)),
      _deliver(std::move(deliver)), _filling(std::make_shared<Batch>()),
      _ownContext(std::make_unique<SearchContext>(pattern))
{
    // With fewer than asked for the search takes longer; its own thread helps wherever it would wait.
    while (int(_workers.size()) + 1 < threads && startThread(_workers, [this] { _work(); })) {
    }
}

SearchPipeline::~SearchPipeline()
{
    {
        const std::lock_guard lock(_mutex);
        _isEnding = true;
        _outstanding.clear();
        _firstUntaken = 0;
    }
    _batchAdded.notify_all();
    for (std::thread &worker : _workers)
        worker.join();
}

void SearchPipeline::_work()
{
    SearchContext context(_pattern);
    std::unique_lock lock(_mutex);
    for (;;) {
        _batchAdded.wait(lock, [this] { return _isEnding || _firstUntaken < _outstanding.size(); });
        if (_isEnding)
            return;
        const SharedBatch batch = _takeWaiting(lock);
        if (!batch)
            continue;
        lock.unlock();
        _run(*batch, context);
        lock.lock();
        batch->state = Batch::State::Done;
        _batchDone.notify_one();
    }
}

SearchPipeline::SharedBatch SearchPipeline::_takeWaiting(std::unique_lock<std::mutex> &)
{
    if (_firstUntaken == _outstanding.size())
        return nullptr;
    SharedBatch batch = _outstanding[_firstUntaken++];
    batch->state = Batch::State::Running;
    return batch;
}

void SearchPipeline::_run(Batch &batch, SearchContext &context)
{
    for (SearchJob &job : batch.jobs) {
        if (_shouldStop)
            return;
        _searchJob(job, context);
    }
}

void SearchPipeline::_searchJob(SearchJob &job, SearchContext &context)
{
    if (job.folderErrorNumber == 0)
        job.result = _searchFile(job.file, context, job.error);
    job.folder.reset();
}

void SearchPipeline::add(SearchJob job)
{
    _filling->jobs.push_back(std::move(job));
    if (_filling->jobs.size() < FILES_IN_BATCH)
        return;
    _pushBatch();
    _deliverUntil(MOST_OUTSTANDING);
}

void SearchPipeline::_pushBatch()
{
    {
        const std::lock_guard lock(_mutex);
        _outstanding.push_back(std::move(_filling));
    }
    _batchAdded.notify_one();
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
    _searchJob(job, *_ownContext);
    _deliver(job);
}

/// Delivers every batch that is done from the front on; while more than so many are outstanding and it isn't
/// enough yet, works or waits.
void SearchPipeline::_deliverUntil(size_t mostOutstanding, bool (*isEnough)())
{
    std::unique_lock lock(_mutex);
    while (!_shouldStop && !_outstanding.empty() && (isEnough == nullptr || !isEnough())) {
        if (_outstanding.front()->state == Batch::State::Done) {
            const SharedBatch batch = std::move(_outstanding.front());
            _outstanding.pop_front();
            --_firstUntaken;
            lock.unlock();
            for (const SearchJob &job : batch->jobs) {
                if (_shouldStop)
                    return;
                _deliver(job);
            }
            lock.lock();
        } else if (_outstanding.size() <= mostOutstanding) {
            return;
        } else if (const SharedBatch batch = _takeWaiting(lock)) {
            lock.unlock();
            _run(*batch, *_ownContext);
            lock.lock();
            batch->state = Batch::State::Done;
        } else {
            _batchDone.wait(lock);
        }
    }
}

} // namespace tidemark
