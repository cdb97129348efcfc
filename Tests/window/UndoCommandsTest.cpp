#include "support/gui/OpenWindow.h"

#include "replace/UndoJournal.h"

namespace tidemark::test {

namespace {

using UndoCommandsTest = WindowTest;

TEST_F(UndoCommandsTest, ARunIsUndoneAndRedoneAndTheResultsFollow)
{
    const TemporaryFolder state;
    const UndoJournalFolder journal(state.path());
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, false);
    const QByteArray contents[] = {"foo foo\nx\n", "a foo\r\n", "a foo"};
    for (int number = 0; number < 3; ++number)
        folder.write(QByteArray::number(number), contents[number]);
    OpenWindow window(application);
    const SearchWindowActions &actions = window.controller().actions();
    EXPECT_FALSE(actions.undoReplacing->isEnabled());
    window.searchIn(folder.path(), u"foo"_s);
    window.search();
    window.document.setReplaceText(u"bar"_s);
    actions.replaceAll->trigger();
    ASSERT_NE(window.sheet(), nullptr);
    EXPECT_TRUE(window.sheet()->informativeText().startsWith(u"You can undo this with Edit > Undo.\n\n"_s));
    window.press(u"Replace All"_s);
    ASSERT_TRUE(waitFor([&] { return folder.read("2") == "a bar" && !window.controller().isReplacing(); }));
    EXPECT_EQ(actions.undoReplacing->text(), u"&Undo Replacing in 3 Files"_s);

    // Somebody's work is left alone.
    folder.write("1", "a bar, changed\r\n");
    actions.undoReplacing->trigger();
    EXPECT_EQ(folder.read("0"), contents[0]);
    EXPECT_EQ(folder.read("1"), "a bar, changed\r\n");
    EXPECT_EQ(folder.read("2"), contents[2]);
    ASSERT_NE(window.sheet(), nullptr);
    window.sheet()->close();
    EXPECT_EQ(window.ui().resultsStatusLabel->text(), u"2 files are as they were before • 1 file failed"_s);
    ASSERT_EQ(window.document.findResults().count(), 3);
    EXPECT_EQ(window.document.findResults().files()[0]->matchCount(), 2);
    EXPECT_FALSE(actions.undoReplacing->isEnabled());

    actions.redoReplacing->trigger();
    EXPECT_EQ(folder.read("0"), "bar bar\nx\n");
    EXPECT_EQ(folder.read("2"), "a bar");
    EXPECT_EQ(window.document.findResults().count(), 1);
    actions.undoReplacing->trigger();
    EXPECT_EQ(folder.read("0"), contents[0]);
    EXPECT_EQ(application.countBusyWindows(), 0U);
}

TEST_F(UndoCommandsTest, ReplacementsOneByOneAreOneStep)
{
    const TemporaryFolder state;
    const UndoJournalFolder journal(state.path());
    folder.write("a", "foo foo foo\n");
    OpenWindow window(application);
    window.searchIn(folder.path(), u"foo"_s);
    window.search();
    window.document.setReplaceText(u"food"_s);
    const SearchWindowActions &actions = window.controller().actions();
    for (int step = 0; step < 3; ++step)
        actions.replaceAndFind->trigger();
    EXPECT_EQ(folder.read("a"), "food food food\n");
    actions.undoReplacing->trigger();
    EXPECT_EQ(folder.read("a"), "foo foo foo\n");
    EXPECT_FALSE(actions.undoReplacing->isEnabled());
    actions.redoReplacing->trigger();
    EXPECT_EQ(folder.read("a"), "food food food\n");
}

} // namespace

} // namespace tidemark::test
