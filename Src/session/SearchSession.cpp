#include "session/SearchSession.h"

#include "session/FindResults.h"

#include <utility>

namespace tidemark {

namespace {

/// So many are listed within a few milliseconds.
constexpr qsizetype MOST_LINES_GATHERED = 50000;
/// So that listing what has arrived meanwhile never takes long, the search doesn't run further ahead.
constexpr qsizetype MOST_LINES_WAITING = 2 * MOST_LINES_GATHERED;

} // namespace

SearchSession::SearchSession(QObject *context, Receiver receiver)
    : _context(context), _receiver(std::move(receiver))
{}

void SearchSession::detach()
{
    const std::lock_guard lock(_mutex);
    _context = nullptr;
    FindResultItems released = std::exchange(_arrived.files, {});
    for (FoundPart &part : std::exchange(_arrived.parts, {}))
        released << part.file << std::move(part.children);
    releaseInBackground(std::move(released));
    _taken.notify_all();
}

SearchSession::Arrived SearchSession::takeArrived()
{
    const std::lock_guard lock(_mutex);
    Arrived arrived = std::exchange(_arrived, {});
    _takenCount += quint64(arrived.files.size() + arrived.parts.size());
    _linesGathered = _linesWaiting = 0;
    _allTaken = {_before.files + _inFile.files, _before.matches + _inFile.matches};
    _taken.notify_all();
    return arrived;
}

void SearchSession::endArrival()
{
    const std::lock_guard lock(_mutex);
    _hasArrivalEnded = true;
    _taken.notify_all();
}

quint64 SearchSession::addResultsMatchLineCount() const
{
    const std::lock_guard lock(_mutex);
    return _addResultsMatchLineCount;
}

std::optional<QString> SearchSession::currentStatus() const
{
    const std::lock_guard lock(_mutex);
    if (_toldPath.isEmpty())
        return {};
    return scanningStatus(_allTaken.matches, _allTaken.files, _scannedCount, _toldPath);
}

void SearchSession::_post(std::function<void()> delivery)
{
    if (_context == nullptr)
        return;
    QMetaObject::invokeMethod(
        _context,
        [session = shared_from_this(), delivery = std::move(delivery)] {
            // Only this thread detaches, so nothing needs to be locked here.
            if (session->_context != nullptr)
                delivery();
        },
        Qt::QueuedConnection);
}

void SearchSession::didFindFile(const FilePath &path, quint64 scannedCount, quint64 fileMatchCount,
                                quint64 matchCount)
{
    _scannedCount.store(scannedCount, std::memory_order_relaxed);
    const bool isDue = scanningStatusIsDue();
    const QString status = isDue ? scanningStatus(matchCount, fileMatchCount, scannedCount, path) : QString();
    const std::lock_guard lock(_mutex);
    if (_isDropping())
        return;
    _before = {fileMatchCount, matchCount};
    _inFile = {};
    if (!isDue)
        return;
    _toldPath = path;
    _post([this, status] { _receiver.statusChanged(status); });
}

void SearchSession::didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file)
{
    const FileMatches *matches = file->matches();
    const Counts found = {matches != nullptr ? 1U : 0U, matches != nullptr ? matches->count() : 0};
    std::unique_lock lock(_mutex);
    if (_isDropping())
        return;
    _inFile = found;
    _arrived.files << file;
    _handOver(lock, file->matchLines().size());
}

void SearchSession::didFindMoreInFile(const FoundPart &part)
{
    const quint64 count = part.matches ? part.matches->count() : 0;
    std::unique_lock lock(_mutex);
    if (_isDropping())
        return;
    if (part.kind == FoundPart::Kind::Instead)
        _inFile = {};
    _inFile = {part.matches ? 1U : _inFile.files, _inFile.matches + count};
    _arrived.parts << part;
    _handOver(lock, part.children.size());
}

void SearchSession::_handOver(std::unique_lock<std::mutex> &lock, qsizetype matchLines)
{
    _addResultsMatchLineCount += quint64(matchLines);
    ++_arrivedCount;
    _linesGathered += matchLines;
    _linesWaiting += matchLines;
    const bool isShownByItself = _addResultsMatchLineCount < SHOWN_ONE_BY_ONE_BELOW;
    if (isShownByItself || _linesGathered > MOST_LINES_GATHERED)
        _postArrival();
    if (isShownByItself || _linesWaiting > MOST_LINES_WAITING)
        _taken.wait(lock, [this] { return _isAllTaken() || _isDropping(); });
}

void SearchSession::_postArrival()
{
    _linesGathered = 0;
    _post([this, number = _arrivedCount] {
        // A refresh may have come in between; what has gathered since then is the next one's.
        if (_takenCount < number)
            _receiver.resultsArrived();
    });
}

void SearchSession::errorOccured(const TDError &error)
{
    const std::lock_guard lock(_mutex);
    _post([this, error] { _receiver.errorOccured(error); });
}

void SearchSession::didFinishSearch(quint64 scannedCount, quint64 fileMatchCount, quint64 matchCount)
{
    _end({matchCount, fileMatchCount, scannedCount, SearchEnd::Completed});
}

void SearchSession::didStopSearch(quint64 scannedCount, quint64 fileMatchCount, quint64 matchCount)
{
    _end({matchCount, fileMatchCount, scannedCount, SearchEnd::Interrupted});
}

void SearchSession::didLeaveOut(const LeftOut &leftOut)
{
    const std::lock_guard lock(_mutex);
    _leftOut = leftOut;
}

void SearchSession::_end(SearchCounts counts)
{
    const std::lock_guard lock(_mutex);
    if (_hasArrivalEnded) {
        counts.matches = _allTaken.matches;
        counts.filesWithMatches = _allTaken.files;
    }
    _post([this, counts, leftOut = _leftOut] {
        if (_receiver.counted)
            _receiver.counted(leftOut, counts);
        _receiver.ended(finishedStatus(counts));
    });
}

} // namespace tidemark
