#include "session/SearchControl.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "session/EverythingShows.h"
#include "session/FindReplaceHistory.h"
#include "session/MyDocument.h"
#include "session/SearchAgain.h"

#include <algorithm>
#include <system_error>

namespace tidemark {

SearchControl::SearchControl(MyDocument &document, QObject *parent, SearchBody body)
    : QObject(parent), _document(document), _body(std::move(body))
{
    _refreshTimer.setInterval(RESULTS_REFRESH_INTERVAL);
    connect(&_refreshTimer, &QTimer::timeout, this, &SearchControl::updateSearchResultsOutlineView);
}

SearchControl::~SearchControl()
{
    _abandonSession();
    for (SearchThread &search : _threads)
        search.thread.join();
}

void SearchControl::startSearchOfEverything()
{
    _searchesEverything = true;
    startSearch();
    _searchesEverything = false;
}

void SearchControl::startSearch()
{
    // The one before may still be winding down; nothing of it may reach the document any more.
    _abandonSession();
    _joinEndedThreads();
    Q_EMIT searchWillStart();
    _noteLocations();
    _resetDocument();
    _searchedTerms = SearchTerms::withUserDefaults(_document.findText());
    saveFindReplaceTextHistory(UserDefaults::standard(), _document.findText(), _document.replaceText());
    _setSectionTitle(localizedString("Generating search results…"));
    _beginSession();
}

bool SearchControl::mayGrow(const TDFindResultItem &file) const
{
    return _searching && file.comesInParts() && _document.findResults().isLast(file);
}

std::optional<double> SearchControl::shareDone() const
{
    if (!_session || _knownFileCount.value_or(0) == 0)
        return {};
    return std::min(1.0, double(_session->scannedCount()) / double(*_knownFileCount));
}

/// The files are as many as the last time, more or less, where the same places are searched.
void SearchControl::_noteLocations()
{
    const QList<TDSearchLocation> &locations = _document.searchLocations();
    const bool areSame =
        std::equal(locations.begin(), locations.end(), _locations.begin(), _locations.end(),
                   [](const TDSearchLocation &one, const TDSearchLocation &other) {
                       return one.url == other.url && one.includeSubFolders == other.includeSubFolders;
                   });
    if (!areSame)
        _knownFileCount.reset();
    _locations = locations;
}

void SearchControl::_resetDocument()
{
    _document.setFilesWithMatchesCount(TD_NO_SEARCH_PERFORMED);
    _setSearching(true);
    _document.findResults().clear();
    _document.setResultsStatusText(QStringLiteral(""));
}

void SearchControl::_beginSession()
{
    SearchSession::Receiver receiver;
    receiver.resultsArrived = [this] { updateSearchResultsOutlineView(); };
    receiver.statusChanged = [this](const QString &status) {
        // What the status counts is listed by then.
        updateSearchResultsOutlineView();
        if (!_searching)
            _document.setResultsStatusText(status);
    };
    _hasFailed = false;
    receiver.errorOccured = [this](const TDError &error) {
        _hasFailed = true;
        Q_EMIT errorOccured(error);
    };
    receiver.ended = [this](const QString &status) { _searchFinished(status); };
    receiver.counted = [this](const LeftOut &leftOut, const SearchCounts &counts) {
        _leftOut = leftOut;
        _counts = counts;
    };
    _session = std::make_shared<SearchSession>(this, receiver);
    _wereShifted = false;
    _searchEngine = std::make_shared<TDSearchEngine>();
    _searchEngine->setSearchesEverything(_searchesEverything);
    _searchEngine->setDelegate(_session);
    const bool ignoreCase = UserDefaults::standard().boolForKey(TD_USER_DEFAULTS_NAME_IGNORE_CASE);
    _refreshTimer.start();
    // The first refresh comes at once, but not before the caller has returned; it is queued
    // before the search can queue anything, so it never shows what belongs to a later refresh.
    QMetaObject::invokeMethod(
        this,
        [this, session = _session] {
            if (_searching && _session == session)
                updateSearchResultsOutlineView();
        },
        Qt::QueuedConnection);
    const SearchRequest request{_document.findText(), _document.searchLocations(), !ignoreCase};
    _runOnThread([body = _body, engine = _searchEngine, session = _session, request] {
        body(*engine, request, *session);
    });
}

void SearchControl::_runOnThread(std::function<void()> work)
{
    auto hasEnded = std::make_shared<std::atomic<bool>>(false);
    auto run = [work = std::move(work), hasEnded]() mutable {
        work();
        // Let go of everything here, so that joining an ended thread never waits for it.
        work = {};
        *hasEnded = true;
    };
    try {
        _threads.push_back({std::thread(std::move(run)), hasEnded});
    } catch (const std::system_error &noThread) {
        abandonSearch();
        Q_EMIT errorOccured(TDError::posixError(noThread.code().value()));
    }
}

void SearchControl::doSearch(TDSearchEngine &engine, const SearchRequest &request, TDSearchEngineDelegate &)
{
    engine.startSearch(request.findText, request.searchLocations, request.caseSensitive);
}

void SearchControl::stopSearch()
{
    // What the stop itself cuts short isn't taken for an outcome.
    if (_again)
        return _endReadAs();
    if (_searchEngine)
        _searchEngine->stopSearch();
    // Whoever replaces or undoes from now on goes by what is listed, however long the thread takes to end.
    if (_searching && _session) {
        _session->endArrival();
        _mergeNewResults();
    }
    _setSearching(false);
}

void SearchControl::abandonSearch()
{
    _abandonSession();
    _setSearching(false);
}

void SearchControl::_abandonSession()
{
    _refreshTimer.stop();
    if (_session)
        _session->detach();
    if (_again)
        (void)_again->taken();
    _again.reset();
    if (_searchEngine)
        _searchEngine->stopSearch();
    _session.reset();
}

void SearchControl::_joinEndedThreads()
{
    std::erase_if(_threads, [](SearchThread &search) {
        if (!*search.hasEnded)
            return false;
        search.thread.join();
        return true;
    });
}

void SearchControl::updateSearchResultsOutlineView()
{
    if (!_session)
        return;
    _mergeNewResults();
    // What is listed and what is counted agree.
    if (const auto status = _searching ? _session->currentStatus() : std::nullopt)
        _document.setResultsStatusText(*status);
}

void SearchControl::_mergeNewResults()
{
    SearchSession::Arrived arrived = _session->takeArrived();
    _document.setFilesWithMatchesCount(arrived.files.size());
    if (!arrived.files.isEmpty())
        _document.findResults().append(arrived.files);
    for (FoundPart &part : arrived.parts)
        _document.findResults().add(std::move(part));
    _document.setFilesWithMatchesCount(_document.findResults().countOfAll());
}

void SearchControl::_searchFinished(const QString &status)
{
    _wasStopped = !_searching;
    if (!_wasStopped)
        _knownFileCount = _counts.searchedFiles;
    _document.setResultsStatusText(status);
    _setSectionTitle(localizedString("Review search results"));
    _mergeNewResults();
    if (_document.filesWithMatchesCount() == TD_NO_SEARCH_PERFORMED)
        _document.setFilesWithMatchesCount(0);
    _setSearching(false);
    _document.setFilesWithMatchesCount(_document.findResults().countOfAll());
    Q_EMIT searchFinished();
}

// -- Once more, in another encoding

void SearchControl::readAs(const FindResultItems &files, StringEncoding encoding)
{
    if (_searching || !_searchedTerms || files.isEmpty())
        return;
    // One that was stopped may still be winding down.
    _abandonSession();
    _joinEndedThreads();
    _wereShifted = matchesMayBeShifted();
    _again = std::make_shared<SearchAgain>(this, files, encoding, [this] { _endReadAs(); });
    _searchEngine = std::make_shared<TDSearchEngine>();
    _searchEngine->setDelegate(_again);
    _setSearching(true);
    _setSectionTitle(localizedString("Generating search results…"));
    _runOnThread([engine = _searchEngine, again = _again, terms = *_searchedTerms] {
        again->search(*engine, terms);
        engine->setDelegate(nullptr);
    });
}

void SearchControl::_endReadAs()
{
    const std::shared_ptr<SearchAgain> again = std::exchange(_again, nullptr);
    const auto outcomes = again->taken();
    _searchEngine->stopSearch();
    const FindResultItems read = _listReadAs(*again, outcomes);
    _document.setFilesWithMatchesCount(_document.findResults().countOfAll());
    const auto count = std::count_if(outcomes.begin(), outcomes.end(), [](const auto &outcome) {
        return outcome == nullptr || outcome->matches() != nullptr;
    });
    _document.setResultsStatusText(
        finishedStatus(_counts) +
        readAsStatus(quint64(count), localizedNameOfStringEncoding(again->encoding())));
    _wasStopped = false;
    _setSectionTitle(localizedString("Review search results"));
    _setSearching(false);
    Q_EMIT readAgain(read);
    Q_EMIT searchFinished();
}

/// Those that are listed now. What is counted follows.
FindResultItems SearchControl::_listReadAs(const SearchAgain &again,
                                           const QHash<FilePath, std::shared_ptr<TDFindResultItem>> &outcomes)
{
    FindResults::Replacements replacements;
    FindResultItems read;
    const auto count = [this](const TDFindResultItem &file, bool isListed) {
        const FileMatches *matches = file.matches();
        const quint64 sign = isListed ? 1 : ~quint64(0);
        if (matches == nullptr)
            _leftOut[LeftOutReason::Unreadable] += sign;
        _counts.filesWithMatches += matches == nullptr ? 0 : sign;
        _counts.matches += matches == nullptr ? 0 : sign * matches->count();
    };
    const EverythingShows everythingShows(_document.findResults());
    for (const auto &file : again.files()) {
        const auto outcome = outcomes.constFind(file->path());
        // Somebody may have removed it meanwhile.
        if (outcome == outcomes.cend() || !_document.findResults().shows(*file))
            continue;
        replacements.insert(file.get(), *outcome);
        count(*file, false);
        if (!*outcome)
            continue;
        count(**outcome, true);
        read << *outcome;
    }
    _document.findResults().replaceFiles(replacements);
    return read;
}

void SearchControl::_setSearching(bool searching)
{
    if (!searching)
        _refreshTimer.stop();
    if (_searching == searching)
        return;
    _searching = searching;
    Q_EMIT searchingChanged(searching);
}

void SearchControl::_setSectionTitle(const QString &title)
{
    _sectionTitle = title;
    Q_EMIT sectionTitleChanged(title);
}

} // namespace tidemark
