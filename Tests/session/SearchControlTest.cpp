#include "session/SearchControl.h"

#include "foundation/UserDefaults.h"
#include "session/MyDocument.h"
#include "support/Events.h"
#include "support/ResultNodes.h"
#include "support/SearchFolder.h"

#include <QSemaphore>

namespace tidemark::test {

namespace {

std::shared_ptr<TDFindResultItem> fileWith(const QByteArray &path, int lines)
{
    return fileNode(path, QStringList(lines, u"foo"_s));
}

/// A search whose body the test writes.
class SearchControlTest : public SearchFolderTest
{
protected:
    void search(SearchControl::SearchBody body)
    {
        control = std::make_unique<SearchControl>(document, nullptr, std::move(body));
        control->setRefreshInterval(refreshInterval);
        control->startSearch();
    }
    bool waitForCount(qsizetype count)
    {
        return waitFor([&] { return document.findResults().count() == count; });
    }

    MyDocument document;
    std::chrono::milliseconds refreshInterval = std::chrono::hours(1); ///< only when a test asks for it
    QSemaphore goOn;
    std::unique_ptr<SearchControl> control;
};

TEST_F(SearchControlTest, FilesAreShownOneByOneUntilThe250thMatchLine)
{
    std::atomic<bool> handedOver = false;
    search([&](TDSearchEngine &, const SearchRequest &, TDSearchEngineDelegate &delegate) {
        delegate.didFindMatchInFile(fileWith("/a", 249));
        // Only after the window has taken it does the search go on.
        qsizetype shown = 0;
        QMetaObject::invokeMethod(
            &document, [&] { shown = document.findResults().count(); }, Qt::BlockingQueuedConnection);
        EXPECT_EQ(shown, 1);
        delegate.didFindMatchInFile(fileWith("/b", 1));
        delegate.didFindMatchInFile(fileWith("/c", 1));
        handedOver = true;
        goOn.acquire();
        delegate.didFinishSearch(3, 3, 251);
    });
    ASSERT_TRUE(waitFor([&] { return handedOver.load(); }));
    QCoreApplication::processEvents();
    EXPECT_EQ(document.findResults().count(), 1);
    EXPECT_EQ(document.filesWithMatchesCount(), 1);
    control->updateSearchResultsOutlineView();
    EXPECT_EQ(document.findResults().count(), 3);
    goOn.release();
    ASSERT_TRUE(waitFor([&] { return !control->searching(); }));
    EXPECT_EQ(document.filesWithMatchesCount(), 3);
    EXPECT_EQ(document.resultsStatusText(),
              u"Search completed (251 matches found in 3 files • 3 files searched)"_s);
}

TEST_F(SearchControlTest, ALargeFileGrowsAndWhatIsCountedIsListed)
{
    const auto file = fileWith("/a", 2);
    const auto part = [&](int lines) {
        const auto other = fileWith("/a", lines);
        return FoundPart{file, FoundPart::Kind::More, other->children(), *other->matches()};
    };
    search([&](TDSearchEngine &, const SearchRequest &, TDSearchEngineDelegate &delegate) {
        QString status;
        const auto readStatus = [&] {
            QMetaObject::invokeMethod(
                &document, [&] { status = document.resultsStatusText(); }, Qt::BlockingQueuedConnection);
        };
        // It is told once a second, whoever searched before.
        for (; status.isEmpty(); readStatus())
            delegate.didFindFile(file->path(), 7, 4, 10);
        delegate.didFindMatchInFile(file);
        delegate.didFindMoreInFile(part(3));
        // One by one still, so that it is in the list by now.
        readStatus();
        EXPECT_EQ(file->children().size(), 5);
        EXPECT_EQ(status, u"15 matches found in 5 files • 7 files searched • Searching: /a"_s);
        delegate.didFindMoreInFile(part(300));
        delegate.didFindMoreInFile(part(1));
        delegate.didFinishSearch(1, 1, 306);
    });
    ASSERT_TRUE(waitFor([&] { return !control->searching(); }));
    EXPECT_EQ(document.findResults().count(), 1);
    EXPECT_EQ(document.findResults().files()[0]->children().size(), 306);
    EXPECT_EQ(document.findResults().files()[0]->matchCount(), 306);
}

TEST_F(SearchControlTest, HowMuchIsDoneIsKnownWhereTheSamePlacesWereSearchedToTheEnd)
{
    std::atomic<quint64> scanned = 0;
    const auto run = [&](const std::optional<double> &share) {
        control->startSearch();
        ASSERT_TRUE(waitFor([&] { return scanned == 5; }));
        EXPECT_EQ(control->shareDone(), share);
        goOn.release();
        ASSERT_TRUE(waitFor([&] { return !control->searching(); }));
        scanned = 0;
    };
    control = std::make_unique<SearchControl>(
        document, nullptr, [&](TDSearchEngine &, const SearchRequest &, TDSearchEngineDelegate &delegate) {
            delegate.didFindFile(FilePath("/a"), 5, 0, 0);
            scanned = 5;
            goOn.acquire();
            delegate.didFinishSearch(20, 0, 0);
        });
    run({});
    run(0.25);
    TDSearchLocation location;
    location.url = QUrl::fromLocalFile(u"/elsewhere"_s);
    document.setSearchLocations({location});
    run({});
    run(0.25);
}

TEST_F(SearchControlTest, TheFilesOfARealSearchAreShownBeforeItsEnd)
{
    for (int file = 0; file < 200; ++file)
        folder.write(QByteArray::number(file) + ".txt", "a needle\n");
    document.setSearchLocations({location(folder.path())});
    document.setFindText(u"needle"_s);
    control = std::make_unique<SearchControl>(document);
    qsizetype shownOnTheWay = 0;
    QObject::connect(&document.findResults(), &FindResults::appended, [&](qsizetype first, qsizetype count) {
        // One by one, while it runs.
        EXPECT_EQ(count, 1);
        EXPECT_EQ(first, shownOnTheWay);
        shownOnTheWay += control->searching() ? 1 : 0;
    });
    bool hasEnded = false;
    QObject::connect(control.get(), &SearchControl::searchFinished, [&] { hasEnded = true; });
    control->startSearch();
    ASSERT_TRUE(waitFor([&] { return hasEnded; }));
    EXPECT_EQ(shownOnTheWay, 200);
}

TEST_F(SearchControlTest, LaterFilesAreShownWhileTheSearchGoesOn)
{
    refreshInterval = RESULTS_REFRESH_INTERVAL;
    search([&](TDSearchEngine &, const SearchRequest &, TDSearchEngineDelegate &delegate) {
        for (const quint64 number : {1, 2, 3})
            delegate.didFindMatchInFile(fileWith("/" + QByteArray::number(number), 250));
        goOn.acquire();
        delegate.didFinishSearch(3, 3, 750);
    });
    EXPECT_TRUE(waitForCount(3));
    EXPECT_TRUE(control->searching());
    goOn.release();
    ASSERT_TRUE(waitFor([&] { return !control->searching(); }));
}

TEST_F(SearchControlTest, ARefreshBetweenHandOverAndDeliveryShowsNothingEarly)
{
    std::atomic<bool> handedOver = false;
    search([&](TDSearchEngine &, const SearchRequest &, TDSearchEngineDelegate &delegate) {
        goOn.acquire();
        delegate.didFindMatchInFile(fileWith("/a", 249));
        delegate.didFindMatchInFile(fileWith("/b", 1));
        handedOver = true;
        goOn.acquire();
        delegate.didFinishSearch(2, 2, 250);
    });
    QCoreApplication::processEvents();
    goOn.release();
    while (document.findResults().isEmpty())
        control->updateSearchResultsOutlineView();
    while (!handedOver)
        std::this_thread::yield();
    QCoreApplication::processEvents();
    EXPECT_EQ(document.findResults().count(), 1);
    goOn.release();
    ASSERT_TRUE(waitFor([&] { return !control->searching(); }));
    EXPECT_EQ(document.findResults().count(), 2);
}

TEST_F(SearchControlTest, ANewSearchStartsFromNothingAndGetsNothingOfTheOldOne)
{
    std::atomic<int> round = 0;
    search([&](TDSearchEngine &, const SearchRequest &, TDSearchEngineDelegate &delegate) {
        if (round == 0) {
            delegate.didFindMatchInFile(fileWith("/old", 1));
            goOn.acquire();
            delegate.didFindMatchInFile(fileWith("/stale", 1));
            delegate.didStopSearch(9, 9, 9);
            return;
        }
        delegate.didFindMatchInFile(fileWith("/new", 1));
        delegate.didFinishSearch(1, 1, 1);
    });
    ASSERT_TRUE(waitForCount(1));
    control->stopSearch();
    EXPECT_FALSE(control->searching());
    EXPECT_EQ(document.findResults().count(), 1);

    round = 1;
    control->startSearch();
    EXPECT_EQ(document.filesWithMatchesCount(), TD_NO_SEARCH_PERFORMED);
    EXPECT_TRUE(document.findResults().isEmpty());
    EXPECT_EQ(document.resultsStatusText(), u""_s);
    EXPECT_EQ(control->sectionTitle(), u"Generating search results…"_s);
    goOn.release();
    ASSERT_TRUE(waitFor([&] { return !control->searching(); }));
    control.reset();
    QCoreApplication::processEvents();
    ASSERT_EQ(document.findResults().count(), 1);
    EXPECT_EQ(document.findResults().files()[0]->path().bytes(), "/new");
    EXPECT_EQ(document.resultsStatusText(),
              u"Search completed (1 match found in 1 file • 1 file searched)"_s);
}

TEST_F(SearchControlTest, NothingIsListedBehindAStopHoweverLongTheSearchTakesToEnd)
{
    const auto file = fileWith("/a", 250);
    std::atomic<bool> handedOver = false;
    search([&](TDSearchEngine &, const SearchRequest &, TDSearchEngineDelegate &delegate) {
        delegate.didFindMatchInFile(file);
        handedOver = true;
        goOn.acquire();
        const auto more = fileWith("/a", 1);
        delegate.didFindMoreInFile({file, FoundPart::Kind::More, more->children(), *more->matches()});
        delegate.didFindFile(FilePath("/b"), 2, 1, 251);
        delegate.didFindMatchInFile(fileWith("/b", 1));
        delegate.didStopSearch(2, 2, 252);
    });
    ASSERT_TRUE(waitFor([&] { return handedOver.load(); }));
    bool hasEnded = false;
    QObject::connect(control.get(), &SearchControl::searchFinished, [&] { hasEnded = true; });
    EXPECT_TRUE(document.findResults().isEmpty());
    control->stopSearch();
    EXPECT_EQ(document.findResults().count(), 1) << "what had arrived";
    goOn.release();
    ASSERT_TRUE(waitFor([&] { return hasEnded; }));
    EXPECT_EQ(document.findResults().count(), 1);
    EXPECT_EQ(file->matchCount(), 250);
    EXPECT_EQ(document.resultsStatusText(),
              u"Search interrupted (250 matches found in 1 file • 2 files searched)"_s);
}

TEST_F(SearchControlTest, GoingAwayWakesASearchThatWaitsForTheMainThread)
{
    search([&](TDSearchEngine &, const SearchRequest &, TDSearchEngineDelegate &delegate) {
        goOn.release();
        for (int file = 0; file < 100; ++file)
            delegate.didFindMatchInFile(fileWith("/f", 1));
        delegate.didFinishSearch(100, 100, 100);
    });
    goOn.acquire();
    control.reset();
    QCoreApplication::processEvents();
    EXPECT_TRUE(document.findResults().isEmpty());
}

TEST_F(SearchControlTest, TheEndIsToldWithItsCountsAndAFaultyExpressionOnce)
{
    folder.write("a.txt", "nothing here");
    document.setSearchLocations({location(folder.path())});
    control = std::make_unique<SearchControl>(document);
    QList<qint64> codes;
    QObject::connect(control.get(), &SearchControl::errorOccured,
                     [&codes](const TDError &error) { codes << error.code(); });
    const QString counts = u" (0 matches found in 0 files • 1 file searched)"_s;
    for (const auto &[findText, status] : {std::pair(u"absent"_s, u"Search completed"_s + counts),
                                           {u"(unclosed"_s, u"Search interrupted"_s + counts}}) {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, findText[0] == u'(');
        document.setFindText(findText);
        control->startSearch();
        EXPECT_EQ(document.filesWithMatchesCount(), TD_NO_SEARCH_PERFORMED);
        ASSERT_TRUE(waitFor([&] { return !control->searching(); }));
        EXPECT_EQ(document.filesWithMatchesCount(), 0);
        EXPECT_EQ(control->sectionTitle(), u"Review search results"_s);
        EXPECT_EQ(document.resultsStatusText(), status);
    }
    EXPECT_EQ(codes, QList<qint64>{TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR});
}

} // namespace

} // namespace tidemark::test
