#pragma once

#include "search/TDSearchEngine.h"
#include "session/SearchStatusLine.h"

#include <QObject>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace tidemark {

/// While a search has delivered fewer match lines than this, its files are shown one by one.
inline constexpr quint64 SHOWN_ONE_BY_ONE_BELOW = 250;

/// The hand-over of one search from its thread to the main thread. The search thread waits for each file node
/// to be taken until the 250th match line has arrived; what comes later gathers here until the main thread
/// asks, which it is told to do when very much has gathered. Where it can't keep up, the search thread waits.
class SearchSession : public TDSearchEngineDelegate, public std::enable_shared_from_this<SearchSession>
{
public:
    /// Called on the main thread, in the order in which the search thread caused them.
    struct Receiver
    {
        std::function<void()> resultsArrived;
        std::function<void(const QString &)> statusChanged;
        std::function<void(const TDError &)> errorOccured;
        std::function<void(const QString &status)> ended;
        /// Right before the end. May be empty.
        std::function<void(const LeftOut &leftOut, const SearchCounts &counts)> counted = {};
    };

    /// `context` lives on the main thread; detach the session before it goes.
    SearchSession(QObject *context, Receiver receiver);

    // On the main thread.
    /// From now on nothing is delivered and the search thread waits for nobody.
    void detach();
    /// What arrived since the last call: nodes, and behind them further parts of these and of ones before.
    struct Arrived
    {
        FindResultItems files;
        QList<FoundPart> parts;
    };
    Arrived takeArrived();
    /// What arrives from now on is dropped, and the search thread waits for nobody. The end is still told,
    /// with the counts of what was taken.
    void endArrival();
    /// Match lines that have arrived since the search started.
    quint64 addResultsMatchLineCount() const;
    /// The status line, with the counts of what was taken; nothing before it was told for the first time.
    std::optional<QString> currentStatus() const;
    /// Files that the search has come to.
    quint64 scannedCount() const { return _scannedCount.load(std::memory_order_relaxed); }

    // On the search thread.
    void didFindFile(const FilePath &path, quint64 scannedCount, quint64 fileMatchCount,
                     quint64 matchCount) override;
    void didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file) override;
    void didFindMoreInFile(const FoundPart &part) override;
    void errorOccured(const TDError &error) override;
    void didLeaveOut(const LeftOut &leftOut) override;
    void didFinishSearch(quint64 scannedCount, quint64 fileMatchCount, quint64 matchCount) override;
    void didStopSearch(quint64 scannedCount, quint64 fileMatchCount, quint64 matchCount) override;

private:
    /// Never waits. The mutex must be held, so that the context can't go away meanwhile. What is still under
    /// way when the session is detached isn't delivered.
    void _post(std::function<void()> delivery);
    void _handOver(std::unique_lock<std::mutex> &lock, qsizetype matchLines);
    void _postArrival();
    /// Files with matches, and matches.
    struct Counts
    {
        quint64 files = 0;
        quint64 matches = 0;
    };
    bool _isDropping() const { return _context == nullptr || _hasArrivalEnded; }
    bool _isAllTaken() const { return _arrived.files.isEmpty() && _arrived.parts.isEmpty(); }
    void _end(SearchCounts counts);

    mutable std::mutex _mutex;
    std::condition_variable _taken;
    bool _hasArrivalEnded = false;
    QObject *_context;
    const Receiver _receiver;
    Arrived _arrived;
    LeftOut _leftOut;
    quint64 _addResultsMatchLineCount = 0;
    quint64 _arrivedCount = 0;
    qsizetype _linesGathered = 0; ///< since the last call for them
    qsizetype _linesWaiting = 0;  ///< to be taken
    FilePath _toldPath;           ///< of the file that the status was told of last
    std::atomic<quint64> _scannedCount = 0;
    Counts _before; ///< the file that the search has come to
    Counts _inFile; ///< of that file, as far as it has arrived
    Counts _allTaken;
    quint64 _takenCount = 0; ///< on the main thread only
};

} // namespace tidemark
