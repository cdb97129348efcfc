#pragma once

#include "foundation/Descriptor.h"
#include "foundation/FilePath.h"
#include "foundation/ProcessUse.h"
#include "foundation/TDError.h"
#include "matching/TDFindPattern.h"
#include "matching/TDFindResultItem.h"
#include "reading/FileToRead.h"
#include "search/FoldersAhead.h"
#include "search/TeamSize.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace tidemark {

class SearchContext;

/// A folder's descriptor, kept open until the last file found in it has been read.
class SharedFolder
{
public:
    /// Null when there are too many open already, or the descriptor can't be duplicated.
    /// Too many is a quarter of what the process may have open, some hundreds at most.
    static std::shared_ptr<SharedFolder> duplicate(int descriptor);
    ~SharedFolder();
    /// Whether there is room for a good many more.
    static bool areFew();
    int descriptor() const { return _descriptor.number(); }

private:
    explicit SharedFolder(Descriptor descriptor) : _descriptor(std::move(descriptor)) {}
    Descriptor _descriptor;
};

/// One file (or one unreadable folder) on its way through a search.
struct SearchJob
{
    FileToRead file;
    std::shared_ptr<SharedFolder> folder;
    quint64 scannedCount = 0;
    int folderErrorNumber = 0; ///< not 0: a folder that couldn't be read, which isn't counted as a file

    // The outcome, but for what was handed over in parts.
    std::shared_ptr<TDFindResultItem> result;
    TDError error;

    bool isAnnounced = false; ///< of whoever delivers
};

/// Takes a part of what is found in a file that is still searched.
using HandOverPart = std::function<void(FoundPart part)>;

/// Searches one file; on the search's own thread or on a worker. Parts are handed over on the same thread.
using SearchFile = std::function<std::shared_ptr<TDFindResultItem>(
    const FileToRead &file, SearchContext &context, const HandOverPart &handOver, TDError &error)>;

/// Both are called on the search's own thread.
struct SearchDelivery
{
    std::function<void(SearchJob &job)> outcome;
    std::function<void(SearchJob &job, const FoundPart &part)> part; ///< before the outcome
};

/// Searches files on several threads, ahead of the thread that owns it but within a bounded window, and hands
/// the outcomes out on that thread, in the order in which the files were added. That thread takes part in the
/// work whenever it would have to wait. While threads wait for the disk, more of them work, and read folders
/// ahead of the walk as well.
class SearchPipeline
{
public:
    /// The size of the team counts the owner; at least 1. The pattern and the flag must outlive the pipeline.
    SearchPipeline(const TeamSize &team, const TDFindPattern &pattern, const std::atomic<bool> &shouldStop,
                   SearchFile searchFile, SearchDelivery delivery);
    /// Abandons what isn't delivered and joins the workers.
    ~SearchPipeline();
    SearchPipeline(const SearchPipeline &) = delete;
    SearchPipeline &operator=(const SearchPipeline &) = delete;

    /// May deliver files added before.
    void add(SearchJob job);
    /// Delivers everything that was added, unless a stop was asked for.
    void finish();
    /// Searches what was added until few folders are shared, or nothing is left.
    void giveBackFolders();
    /// Delivers everything that was added, then this one, all on the calling thread: its folder may be closed
    /// as soon as it returns.
    void searchAtOnce(SearchJob job);

    /// Whether the threads read folders ahead at the moment, which the following are about.
    bool readsFoldersAhead() const { return _readsFoldersAhead; }
    void willWalkScope(bool withHiddenFolders);
    void didListFolder(const QByteArray &path, const QByteArrayList &foldersToCome);

private:
    using Clock = std::chrono::steady_clock;
    using Lock = std::unique_lock<std::mutex>;
    struct Batch
    {
        enum class State { Waiting, Running, Done };
        std::vector<SearchJob> jobs;
        State state = State::Waiting; ///< guarded by _mutex
        /// With the job that they are of, before which all are done; guarded by _mutex.
        std::vector<std::pair<size_t, FoundPart>> parts;
        size_t delivered = 0; ///< jobs; the owner's
    };
    using SharedBatch = std::shared_ptr<Batch>;

    void _work(int number);
    bool _awaitWork(Lock &lock, int number);
    void _readFolderAhead(Lock &lock);
    void _workOnBatch(Lock &lock, Batch &batch, SearchContext &context);
    void _pushBatch();
    void _deliverUntil(size_t mostOutstanding, bool (*isEnough)() = nullptr);
    bool _deliverNext(Lock &lock);
    void _deliverJobs(Batch &batch, size_t end);
    void _deliverParts(Batch &batch, const std::vector<std::pair<size_t, FoundPart>> &parts);
    void _takePart(Batch &batch, size_t job, FoundPart part);
    void _searchJob(SearchJob &job, SearchContext &context, const HandOverPart &handOver);
    SharedBatch _takeWaiting(Lock &lock);
    void _run(Batch &batch, SearchContext &context);
    size_t _mostOutstanding() const;
    void _look(Lock &lock);
    void _fillTeam(Lock &lock);

    const TDFindPattern &_pattern;
    const std::atomic<bool> &_shouldStop;
    SearchFile _searchFile;
    SearchDelivery _delivery;

    std::mutex _mutex;
    std::condition_variable _workAdded;
    std::condition_variable _teamGrew; ///< those that aren't in the team wait for it
    std::condition_variable _batchDone;
    // All of these are guarded by _mutex.
    std::deque<SharedBatch> _outstanding; ///< in the order of delivery
    size_t _firstUntaken = 0;             ///< all before it in _outstanding are taken
    bool _isEnding = false;
    TeamSize _team;
    std::vector<std::thread> _workers; ///< those of the team, and others that were in it
    FoldersAhead _foldersAhead;
    bool _withHiddenFolders = false;
    Clock::time_point _lookedAt = Clock::now();
    ProcessUse _use; ///< by then

    const bool _isTeamFixed;
    std::atomic<bool> _readsFoldersAhead = false;

    // The owner's.
    const std::thread::id _owner = std::this_thread::get_id();
    SharedBatch _filling;
    size_t _window = 0; ///< of batches
    std::unique_ptr<SearchContext> _ownContext;
};

} // namespace tidemark
