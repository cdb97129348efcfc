#include "window/ResultsFixture.h"

namespace tidemark::test {

namespace {

/// Rows when expanded: 0 a, 1 a:0 (3 matches), 2 a:1 (1), 3 b, 4 b:0 (2).
FindResultItems twoFiles()
{
    return {fileNode("/t/a", {u"foo foo foo\n"_s, u"a foo\n"_s}), fileNode("/t/b", {u"foo foo\n"_s})};
}

using ResultsNavigationTest = WindowTest;

/// A key, and what is selected and highlighted behind it.
using Step = std::tuple<int, Qt::KeyboardModifiers, const char *, const char *>;

void walk(ResultsWindow &window, const QList<Step> &steps)
{
    for (qsizetype number = 0; number < steps.size(); ++number) {
        const auto &[key, modifiers, selection, highlighted] = steps[number];
        window.pressKey(key, modifiers);
        EXPECT_EQ(window.selection(), QLatin1String(selection)) << "step " << number;
        EXPECT_EQ(window.highlighted(), QLatin1String(highlighted)) << "step " << number;
    }
}

TEST_F(ResultsNavigationTest, WalksThroughMatchesLinesAndFilesAndBack)
{
    ResultsWindow window(application, twoFiles());
    window.navigation.selectFirstMatch();
    EXPECT_TRUE(window.navigation.firstItemSelected());
    walk(window, {{Qt::Key_Up, {}, "0:0", "0:0:0"},
                  {Qt::Key_Down, {}, "0:0", "0:0:1"},
                  {Qt::Key_Down, {}, "0:0", "0:0:2"},
                  {Qt::Key_Down, {}, "0:1", "0:1:0"},
                  {Qt::Key_Down, {}, "1:0", "1:0:0"},
                  {Qt::Key_Down, {}, "1:0", "1:0:1"}});
    EXPECT_TRUE(window.navigation.lastItemSelected());
    EXPECT_FALSE(window.navigation.firstItemSelected());
    walk(window, {{Qt::Key_Down, {}, "1:0", "1:0:1"},
                  {Qt::Key_Up, {}, "1:0", "1:0:0"},
                  {Qt::Key_Up, {}, "0:1", "0:1:0"},
                  {Qt::Key_Up, {}, "0:0", "0:0:2"}});
}

TEST_F(ResultsNavigationTest, ExtendsTheSelectionLineByLine)
{
    ResultsWindow window(application, twoFiles());
    window.navigation.selectFirstMatch();
    walk(window, {{Qt::Key_Down, Qt::ShiftModifier, "0:0 0:1", "0:1:0"},
                  {Qt::Key_Down, Qt::ShiftModifier, "0:0 0:1 1:0", "1:0:0"},
                  {Qt::Key_Down, Qt::ShiftModifier, "0:0 0:1 1:0", "1:0:0"},
                  {Qt::Key_Up, Qt::ShiftModifier, "0:0 0:1 1:0", "0:1:0"},
                  {Qt::Key_Up, Qt::ShiftModifier, "0:0 0:1 1:0", "0:0:0"},
                  {Qt::Key_Down, {}, "0:0", "0:0:1"}});
}

TEST_F(ResultsNavigationTest, GoesToTheFirstMatchOfFiles)
{
    ResultsWindow window(application, twoFiles());
    window.navigation.selectFirstMatch();
    const auto control = Qt::ControlModifier;
    walk(window, {{Qt::Key_Up, control, "0:0", "0:0:0"},
                  {Qt::Key_Down, control, "1:0", "1:0:0"},
                  {Qt::Key_Down, control, "1:0", "1:0:0"},
                  {Qt::Key_Up, control, "0:0", "0:0:0"}});
    window.view.selectRow(2);
    walk(window, {{Qt::Key_Up, control, "0:0", "0:0:0"}});
}

TEST_F(ResultsNavigationTest, ClickingAFileOpensItAndHighlightsItsFirstMatch)
{
    ResultsWindow window(application, twoFiles());
    window.view.selectRow(1);
    EXPECT_EQ(window.selection(), u"1"_s);
    EXPECT_EQ(window.highlighted(), u"1:0:0"_s);
    EXPECT_TRUE(window.view.isExpanded(window.model.index(1, 0)));
    window.pressKey(Qt::Key_Down);
    EXPECT_EQ(window.highlighted(), u"1:0:1"_s);
    walk(window, {{Qt::Key_Up, {}, "1:0", "1:0:0"}, {Qt::Key_Up, {}, "0", "0:0:0"}});
}

TEST_F(ResultsNavigationTest, CollapsingTakesTheSelectionToTheFile)
{
    ResultsWindow window(application, twoFiles());
    window.navigation.selectFirstMatch();
    const auto &line = window.results.files()[0]->children()[0];
    EXPECT_TRUE(window.view.selectedRows().contains(*line));
    window.view.collapseItem(window.model.index(0, 0));
    EXPECT_FALSE(window.view.selectedRows().contains(*line));
    EXPECT_EQ(window.selection(), u"0"_s);
    EXPECT_FALSE(window.view.isExpanded(window.model.index(0, 0)));
    walk(window, {{Qt::Key_Down, {}, "0:0", "0:0:0"}});
}

TEST_F(ResultsNavigationTest, ShowsAndHidesEverythingInTurn)
{
    ResultsWindow window(application, twoFiles());
    window.navigation.expandCollapseAll();
    EXPECT_EQ(window.view.numberOfRows(), 5);
    window.view.selectAll();
    EXPECT_EQ(window.selection(), u"0 0:0 0:1 1 1:0"_s);
    window.navigation.expandCollapseAll();
    EXPECT_EQ(window.view.numberOfRows(), 2);
    EXPECT_EQ(window.selection(), u"0"_s);
    EXPECT_FALSE(ResultsNavigation::showHideState());
}

TEST_F(ResultsNavigationTest, RemovesRowsAndGoesOnBehindThem)
{
    ResultsWindow window(application, twoFiles());
    window.navigation.showAll();
    window.view.selectRow(1);
    window.pressKey(Qt::Key_Delete);
    EXPECT_EQ(window.results.files()[0]->children().size(), 1);
    EXPECT_EQ(window.selection(), u"0:0"_s);
    window.pressKey(Qt::Key_Delete);
    EXPECT_EQ(window.results.count(), 1);
    EXPECT_EQ(window.selection(), u"0:0"_s);
    EXPECT_EQ(window.highlighted(), u"0:0:0"_s);
    window.navigation.setRemovalEnabled(false);
    window.pressKey(Qt::Key_Delete);
    EXPECT_EQ(window.results.count(), 1);
    window.navigation.setRemovalEnabled(true);
    window.pressKey(Qt::Key_Delete);
    EXPECT_TRUE(window.results.isEmpty());
    EXPECT_EQ(window.selection(), QString());
    window.pressKey(Qt::Key_Down);
}

TEST_F(ResultsNavigationTest, PassesErrorsAndSelectsOneLineAtATime)
{
    ResultsWindow window(application,
                         {failedFileNode("/t/bad", u"Why"_s), fileNode("/t/a", {u"foo\n"_s, u"foo\n"_s})});
    window.navigation.selectFirstMatch();
    EXPECT_EQ(window.highlighted(), u"none"_s);
    walk(window, {{Qt::Key_Down, {}, "1:0", "1:0:0"}, {Qt::Key_Down, {}, "1:1", "1:1:0"}});
    const auto &lines = window.results.files()[1]->children();
    EXPECT_FALSE(window.view.selectedRows().contains(*lines[0]));
    EXPECT_TRUE(window.view.selectedRows().contains(*lines[1]));
    EXPECT_EQ(window.navigation.selection().selectedLines(), u"foo"_s);
    EXPECT_EQ(window.navigation.selection().pathOfCurrentlySelectedItem(), FilePath("/t/a"));
    window.results.clear();
    EXPECT_FALSE(window.navigation.lastItemSelected());
    EXPECT_EQ(window.navigation.currentlySelectedMatchLineItem(), nullptr);
}

} // namespace

} // namespace tidemark::test
