#pragma once

#include "foundation/TDError.h"
#include "search/TDSearchEngine.h"
#include "session/SearchSession.h"
#include "session/SearchTerms.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace tidemark {

class MyDocument;
class SearchAgain;

/// How long results that are no longer shown one by one wait to be shown.
inline constexpr std::chrono::milliseconds RESULTS_REFRESH_INTERVAL = std::chrono::milliseconds(250);

/// What one search is asked for; taken from the document and the settings when it starts.
struct SearchRequest
{
    QString findText;
    QList<TDSearchLocation> searchLocations;
    bool caseSensitive = false;
};

/// Starts and stops a window's searches, moves what they find into the document, and keeps its count and
/// status line right. Each search has a thread of its own. Main thread only; going away ends every search
/// that is left.
class SearchControl : public QObject
{
    Q_OBJECT

public:
    /// Runs one search on the thread that calls it, until it has finished or was stopped. Tests put their own
    /// in.
    using SearchBody = std::function<void(TDSearchEngine &engine, const SearchRequest &request,
                                          TDSearchEngineDelegate &delegate)>;

    explicit SearchControl(MyDocument &document, QObject *parent = nullptr, SearchBody body = doSearch);
    ~SearchControl() override;

    void startSearch();
    /// Once without what the settings leave out.
    void startSearchOfEverything();
    /// Searches listed files once more, in this encoding whatever they say of themselves, and otherwise as
    /// the last search did. What is found takes their place, and where nothing is found they go. It is a
    /// search that can be stopped: files that it hasn't come to stay. Nothing happens while another runs.
    void readAs(const FindResultItems &files, StringEncoding encoding);
    /// What was found so far stays, and nothing is listed behind it. The search's thread may take a moment
    /// longer to end.
    void stopSearch();
    /// Stops, and nothing of the search is delivered any more: its window is closing.
    void abandonSearch();
    bool searching() const { return _searching; }
    /// Whether a listed file may get further lines, as it is still being read.
    bool mayGrow(const TDFindResultItem &file) const;
    void setRefreshInterval(std::chrono::milliseconds interval) { _refreshTimer.setInterval(interval); }

    const QString &sectionTitle() const { return _sectionTitle; }
    /// What the last search was started with; nothing before the first.
    const std::optional<SearchTerms> &searchedTerms() const { return _searchedTerms; }
    /// Where the last search was started; empty before the first.
    const QList<TDSearchLocation> &searchedLocations() const { return _locations; }
    /// Null before the first search.
    const std::shared_ptr<TDSearchEngine> &searchEngine() const { return _searchEngine; }
    /// Whether the last search listed lines on which its matches may be shifted.
    bool matchesMayBeShifted() const
    {
        return _wereShifted || (_searchEngine && _searchEngine->matchesMayBeShifted());
    }
    /// Of the last search that ended.
    const LeftOut &leftOut() const { return _leftOut; }
    quint64 searchedFileCount() const { return _counts.searchedFiles; }
    bool wasStopped() const { return _wasStopped; }
    /// Whether the last search couldn't be what it was to be, which errorOccured() said.
    bool hasFailed() const { return _hasFailed; }
    /// Of the files of the search that runs, from 0 to 1; known when the same locations were searched to the
    /// end before.
    std::optional<double> shareDone() const;
    /// Shows everything that has arrived.
    void updateSearchResultsOutlineView();

    static void doSearch(TDSearchEngine &engine, const SearchRequest &request,
                         TDSearchEngineDelegate &delegate);

Q_SIGNALS:
    /// Before anything of a new search is shown.
    void searchWillStart();
    void searchingChanged(bool searching);
    void sectionTitleChanged(const QString &title);
    /// Files that stand in the place of others since readAs(), before its searchFinished().
    void readAgain(const FindResultItems &files);
    /// After a search has finished or was stopped and everything that it found is shown.
    void searchFinished();
    void errorOccured(const TDError &error);

private:
    struct SearchThread
    {
        std::thread thread;
        std::shared_ptr<std::atomic<bool>> hasEnded;
    };

    void _noteLocations();
    void _resetDocument();
    void _beginSession();
    void _runOnThread(std::function<void()> work);
    void _endReadAs();
    FindResultItems _listReadAs(const SearchAgain &again,
                                const QHash<FilePath, std::shared_ptr<TDFindResultItem>> &outcomes);
    void _abandonSession();
    void _joinEndedThreads();
    void _mergeNewResults();
    void _searchFinished(const QString &status);
    void _setSearching(bool searching);
    void _setSectionTitle(const QString &title);

    MyDocument &_document;
    const SearchBody _body;
    QTimer _refreshTimer;
    std::shared_ptr<TDSearchEngine> _searchEngine;
    std::shared_ptr<SearchSession> _session;
    std::shared_ptr<SearchAgain> _again; ///< while readAs() runs
    std::vector<SearchThread> _threads;
    QString _sectionTitle;
    std::optional<SearchTerms> _searchedTerms;
    LeftOut _leftOut;
    SearchCounts _counts;                   ///< of the last search that ended, kept up by readAs()
    QList<TDSearchLocation> _locations;     ///< of the search that runs, or ran last
    std::optional<quint64> _knownFileCount; ///< of those
    bool _searchesEverything = false;       ///< the one that is about to start
    bool _wereShifted = false;              ///< before what readAs() lists
    bool _searching = false;
    bool _wasStopped = false; ///< the last search that ended
    bool _hasFailed = false;  ///< the last search
};

} // namespace tidemark
