#include "window/results/ResultsFilterBox.h"

#include "session/ResultsFilter.h"
#include "window/ResultsFixture.h"

#include <QAction>

namespace tidemark::test {

namespace {

using ResultsFilterBoxTest = WindowTest;

TEST_F(ResultsFilterBoxTest, LetsOnlySomeShowUntilEscape)
{
    ResultsWindow window(application, {fileNode("/t/a.txt", {u"foo low foo"_s, u"foo high"_s}),
                                       fileNode("/t/b.txt", {u"foo high"_s, u"foo high again"_s}),
                                       fileNode("/t/c.txt", {u"foo low"_s})});
    ResultsFilterBox &box = window.controller().resultsPane().filterBox();
    EXPECT_TRUE(box.isHidden());
    window.navigation.selectFirstMatch();
    window.navigation.moveToNextMatch();
    EXPECT_EQ(window.highlighted(), u"0:0:1"_s);
    window.view.expandItem(window.model.index(1, 0));
    QTest::keyClick(&window.view, Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(box.field().hasFocus());

    // What is highlighted stays as long as it shows.
    QTest::keyClicks(&box.field(), u"low"_s);
    EXPECT_EQ(window.highlighted(), u"0:0:1"_s);
    EXPECT_EQ(window.selection(), u"0:0"_s);
    EXPECT_EQ(box.countText(), u"2 of 3 files show"_s);
    EXPECT_TRUE(box.field().hasFocus());
    EXPECT_EQ(window.model.index(0, 1).data().toString(), u"2"_s);
    window.controller().actions().firstMatchInNextFile->trigger();
    EXPECT_EQ(window.highlighted(), u"1:0:0"_s);
    window.controller().actions().nextMatch->trigger();
    EXPECT_EQ(window.highlighted(), u"1:0:0"_s);

    box.field().setText(u"again"_s);
    EXPECT_EQ(window.highlighted(), u"0:0:0"_s);
    box.field().setText(u"nowhere"_s);
    EXPECT_EQ(window.highlighted(), u"none"_s);
    EXPECT_TRUE(window.view.hintText().contains(u"nowhere"_s));
    EXPECT_FALSE(window.controller().actions().replaceAll->isEnabled());

    box.field().setText(u"high"_s);
    box.field().setFocus();
    QTest::keyClick(&box.field(), Qt::Key_Escape);
    EXPECT_TRUE(box.isHidden() && window.view.hasFocus());
    EXPECT_EQ(window.results.filter(), nullptr);
    EXPECT_EQ(window.model.rowCount(), 3);
    EXPECT_TRUE(window.view.isExpanded(window.model.index(1, 0)));
    EXPECT_EQ(window.highlighted(), u"0:1:0"_s);
}

TEST_F(ResultsFilterBoxTest, CountsWhatComesAndGoes)
{
    ResultsWindow window(application, {fileNode("/t/a.txt", {u"foo low"_s, u"foo high"_s}),
                                       fileNode("/t/b.txt", {u"foo low"_s})});
    ResultsFilterBox &box = window.controller().resultsPane().filterBox();
    window.results.files()[1]->setRemark(u"It failed."_s);
    box.field().setText(u"high"_s);
    EXPECT_EQ(box.countText(), u"1 of 2 files show"_s);
    QAction *showFailures = window.controller().actions().showFailures;
    EXPECT_FALSE(showFailures->isEnabled());
    window.results.append({fileNode("/t/c.txt", {u"foo low"_s})});
    EXPECT_EQ(box.countText(), u"1 of 3 files show"_s);
    box.field().setText(u"low"_s);
    EXPECT_TRUE(showFailures->isEnabled());
    window.navigation.selectFirstMatch();
    window.navigation.removeSelected();
    window.navigation.removeSelected();
    EXPECT_EQ(box.countText(), u"1 of 2 files show"_s);
    window.navigation.removeSelected();
    EXPECT_EQ(box.countText(), u"0 of 1 file shows"_s);
}

TEST_F(ResultsFilterBoxTest, PathsAreThoseBelowTheLocationsOfTheSearch)
{
    folder.write("one/a.txt", "foo\n");
    folder.write("two/b.txt", "foo\n");
    OpenWindow window(application);
    window.searchIn(folder.path(), u"foo"_s);
    window.search();
    // Listed for the next search.
    window.searchIn(folder.path("two"), u"foo"_s);
    window.controller().resultsPane().filterBox().field().setText(u"two"_s);
    ASSERT_EQ(window.document.findResults().count(), 1);
    window.search();
    EXPECT_EQ(window.document.findResults().count(), 0);
    window.searchIn(folder.path(), u"foo"_s);
    window.search();
    EXPECT_EQ(window.document.findResults().count(), 1);
}

TEST_F(ResultsFilterBoxTest, CommandsWorkOnWhatShowsAndSaySo)
{
    folder.write("a.txt", "foo low\nfoo high\n");
    folder.write("b.txt", "foo high\n");
    OpenWindow window(application);
    window.searchIn(folder.path(), u"foo"_s);
    window.search();
    ResultsPane &pane = window.controller().resultsPane();
    pane.filterBox().field().setText(u"low"_s);
    EXPECT_EQ(pane.replaceCommands().allItems().size(), 2);
    window.document.setReplaceText(u"bar"_s);
    window.controller().actions().replaceAll->trigger();
    ASSERT_NE(window.sheet(), nullptr);
    EXPECT_TRUE(window.sheet()->informativeText().contains(u"1 match in 1 file will change."_s));
    EXPECT_TRUE(window.sheet()->informativeText().contains(u"only what the filter “low” shows"_s));
    window.sheet()->reject();
    window.replaceAll(u"bar"_s);
    EXPECT_EQ(folder.read("a.txt"), "bar low\nfoo high\n");
    EXPECT_EQ(folder.read("b.txt"), "foo high\n");
    EXPECT_TRUE(window.document.resultsStatusText().contains(u"only in the results that show"_s));
    pane.filterBox().close();
    // What was hidden is as it was, and can be replaced.
    window.replaceAll(u"bar"_s);
    EXPECT_EQ(folder.read("a.txt"), "bar low\nbar high\n");
    EXPECT_EQ(folder.read("b.txt"), "bar high\n");
}

} // namespace

} // namespace tidemark::test
