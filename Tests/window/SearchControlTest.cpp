#include "support/gui/WindowFixture.h"

#include "window/SearchControl.h"

#include <QSemaphore>

using namespace Qt::Literals::StringLiterals;

namespace tidemark::test {

namespace {

/// A search whose body the test writes.
class SearchControlTest : public WindowTest
{
protected:
    void search(SearchControl::SearchBody body)
    {
        control = std::make_unique<SearchControl>(document, nullptr, std::move(body));
        control->startSearch();
    }
    bool waitForCount(qsizetype count)
    {
        return waitFor([&] { return document.findResults().count() == count; });
    }

    MyDocument document{application};
    QSemaphore goOn;
    std::unique_ptr<SearchControl> control;
};

TEST_F(SearchControlTest, FilesAreShownOneByOneUntilThe250thMatchLine)
{
    std::atomic<bool> handedOver = false;
    search([&](TDSearchEngine &, const SearchRequest &, TDSearchEngineDelegate &delegate) {
        delegate.didFindMatchInFile(fileWithLines("/a", 249));
        // Only after the window has taken it does the search go on.
        qsizetype shown = 0;
        QMetaObject::invokeMethod(
            &document, [&] { shown = document.findResults().count(); }, Qt::BlockingQueuedConnection);
        EXPECT_EQ(shown, 1);
        delegate.didFindMatchInFile(fileWithLines("/b", 1));
        delegate.didFindMatchInFile(fileWithLines("/c", 1));
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

TEST_F(SearchControlTest, ARefreshBetweenHandOverAndDeliveryShowsNothingEarly)
{
    std::atomic<bool> handedOver = false;
    search([&](TDSearchEngine &, const SearchRequest &, TDSearchEngineDelegate &delegate) {
        goOn.acquire();
        delegate.didFindMatchInFile(fileWithLines("/a", 249));
        delegate.didFindMatchInFile(fileWithLines("/b", 1));
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
            delegate.didFindMatchInFile(fileWithLines("/old", 1));
            goOn.acquire();
            delegate.didFindMatchInFile(fileWithLines("/stale", 1));
            delegate.didStopSearch(9, 9, 9);
            return;
        }
        delegate.didFindMatchInFile(fileWithLines("/new", 1));
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

TEST_F(SearchControlTest, WithoutMatchesTheCountIsZeroInTheEnd)
{
    folder.write("a.txt", "nothing here");
    document.setFindText(u"absent"_s);
    document.setSearchLocations({location(folder.path())});
    control = std::make_unique<SearchControl>(document);
    EXPECT_EQ(document.filesWithMatchesCount(), TD_NO_SEARCH_PERFORMED);
    control->startSearch();
    ASSERT_TRUE(waitFor([&] { return !control->searching(); }));
    EXPECT_EQ(document.filesWithMatchesCount(), 0);
    EXPECT_EQ(control->sectionTitle(), u"Review search results"_s);
    EXPECT_EQ(document.resultsStatusText(),
              u"Search completed (0 matches found in 0 files • 1 file searched)"_s);
}

TEST_F(SearchControlTest, GoingAwayWakesASearchThatWaitsForTheMainThread)
{
    search([&](TDSearchEngine &, const SearchRequest &, TDSearchEngineDelegate &delegate) {
        goOn.release();
        for (int file = 0; file < 100; ++file)
            delegate.didFindMatchInFile(fileWithLines("/f", 1));
        delegate.didFinishSearch(100, 100, 100);
    });
    goOn.acquire();
    control.reset();
    QCoreApplication::processEvents();
    EXPECT_TRUE(document.findResults().isEmpty());
}

TEST_F(SearchControlTest, AFaultyExpressionIsReportedAndTheSearchEnds)
{
    folder.write("a.txt", "text");
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, true);
    document.setFindText(u"(unclosed"_s);
    document.setSearchLocations({location(folder.path())});
    control = std::make_unique<SearchControl>(document);
    QList<qint64> codes;
    QObject::connect(control.get(), &SearchControl::errorOccured,
                     [&codes](const TDError &error) { codes << error.code(); });
    control->startSearch();
    ASSERT_TRUE(waitFor([&] { return !control->searching(); }));
    EXPECT_EQ(codes, QList<qint64>{TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR});
    EXPECT_TRUE(document.resultsStatusText().startsWith("Search interrupted ("_L1));
}

} // namespace

} // namespace tidemark::test
