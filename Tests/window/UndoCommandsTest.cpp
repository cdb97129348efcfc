#include "support/gui/OpenWindow.h"

#include "replace/UndoJournal.h"
#include "window/results/ResultsTreeModel.h"

#include <QLabel>

namespace tidemark::test {

namespace {

using UndoCommandsTest = WindowTest;

QLabel *links(OpenWindow &window)
{
    return window.window()->findChild<QLabel *>(u"outcomeLinks"_s);
}

/// By the keyboard alone.
void follow(OpenWindow &window, int number)
{
    QLabel *label = links(window);
    ASSERT_TRUE(label->isVisible());
    window.window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.window()));
    label->setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(label->hasFocus());
    QCoreApplication::processEvents();
    for (int step = 0; step < number; ++step)
        QTest::keyClick(label, Qt::Key_Tab);
    QTest::keyClick(label, Qt::Key_Return);
    QCoreApplication::processEvents();
}

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
    window.searchIn(folder.path(), u"foo"_s);
    window.search();
    window.document.setReplaceText(u"bar"_s);
    actions.replaceAll->trigger();
    ASSERT_NE(window.sheet(), nullptr);
    EXPECT_TRUE(window.sheet()->informativeText().startsWith(u"You can undo this with Edit > Undo.\n\n"_s));
    window.press(u"Replace All"_s);
    ASSERT_TRUE(waitFor([&] { return folder.read("2") == "a bar" && !window.controller().isReplacing(); }));
    EXPECT_EQ(actions.undoReplacing->text(), u"&Undo Replacing in 3 Files"_s);

    QStringList shownWhileRunning;
    QObject::connect(&window.controller().replaceControl(), &ReplaceControl::progressed, [&] {
        shownWhileRunning << window.ui().resultsStatusLabel->text().section(u' ', 0, 0);
    });
    // Somebody's work is left alone.
    folder.write("1", "a bar, changed\r\n");
    actions.undoReplacing->trigger();
    EXPECT_EQ(folder.read("0"), contents[0]);
    EXPECT_EQ(folder.read("1"), "a bar, changed\r\n");
    EXPECT_EQ(folder.read("2"), contents[2]);
    ASSERT_NE(window.sheet(), nullptr);
    window.sheet()->close();
    EXPECT_EQ(window.ui().resultsStatusLabel->text(), u"2 files are as they were before"_s);
    EXPECT_EQ(links(window)->accessibleName(), u"1 file failed, Redo"_s);
    EXPECT_EQ(window.document.findResults().files()[1]->remark(), u"Changed since the search"_s);
    ASSERT_EQ(window.document.findResults().count(), 3);
    EXPECT_EQ(window.document.findResults().files()[0]->matchCount(), 2);
    EXPECT_FALSE(actions.undoReplacing->isEnabled());

    actions.redoReplacing->trigger();
    EXPECT_EQ(folder.read("0"), "bar bar\nx\n");
    EXPECT_EQ(folder.read("2"), "a bar");
    const auto noteOf = [&window](int row) {
        return window.outline()->model()->index(row, 0).data(ResultsTreeModel::NoteRole).toString();
    };
    EXPECT_EQ(window.ui().resultsStatusLabel->text(), u"Redone in 2 files"_s);
    ASSERT_EQ(window.document.findResults().count(), 3) << "what is replaced stays";
    EXPECT_EQ(noteOf(0), u"2 of 2 replaced"_s);
    EXPECT_EQ(noteOf(2), u"1 of 1 replaced"_s);
    actions.undoReplacing->trigger();
    EXPECT_EQ(folder.read("0"), contents[0]);
    EXPECT_EQ(window.document.findResults().count(), 3);
    EXPECT_EQ(noteOf(0), QString());
    shownWhileRunning.removeDuplicates();
    EXPECT_EQ(shownWhileRunning, QStringList({u"Undoing:"_s, u"Redoing:"_s}));
    EXPECT_EQ(application.countBusyWindows(), 0U);
}

TEST_F(UndoCommandsTest, TheStatusLeadsToTheFailuresAndBack)
{
    const TemporaryFolder state;
    const UndoJournalFolder journal(state.path());
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, false);
    for (const char *name : {"a", "b", "c", "d"})
        folder.write(name, "foo foo\n");
    OpenWindow window(application);
    window.searchIn(folder.path(), u"foo"_s);
    window.search();
    window.outline()->collapseAll();
    window.outline()->expandItem(window.outline()->indexAtRow(1));
    window.outline()->selectRow(3);
    EXPECT_FALSE(window.controller().actions().showFailures->isEnabled());
    const QByteArray changed = "foo, changed outside\n";
    folder.write("a", changed);
    folder.write("d", changed);
    window.replaceAll(u"bar"_s);
    window.sheet()->close();
    EXPECT_EQ(window.ui().resultsStatusLabel->text(), u"Replaced 4 matches in 2 files"_s);
    EXPECT_EQ(links(window)->accessibleName(), u"2 files failed, Undo"_s);
    EXPECT_EQ(window.window()->focusWidget(), window.outline());
    const QAbstractItemModel &model = *window.outline()->model();
    const QStringList notes = {{}, u"2 of 2 replaced"_s, u"2 of 2 replaced"_s, {}};
    for (int row = 0; row < 4; ++row)
        EXPECT_EQ(model.index(row, 0).data(ResultsTreeModel::NoteRole).toString(), notes[row]);

    // One after the other, and round again.
    for (const int row : {3, 0, 3}) {
        follow(window, 0);
        EXPECT_EQ(window.outline()->selectedIndex(), model.index(row, 0));
        EXPECT_EQ(window.window()->focusWidget(), window.outline());
    }
    follow(window, 1);
    ASSERT_TRUE(
        waitFor([&] { return folder.read("c") == "foo foo\n" && !window.controller().isReplacing(); }));
    EXPECT_EQ(window.ui().resultsStatusLabel->text(), u"2 files are as they were before"_s);
    EXPECT_EQ(links(window)->accessibleName(), u"Redo"_s);
    EXPECT_EQ(window.outline()->selectedIndex(), model.index(3, 0)) << "the outline stays as it was";
    EXPECT_EQ(window.outline()->numberOfExpandedFiles(), 4);
    const TDMatchLine &line = *window.document.findResults().files()[1]->children().first()->matchLine();
    EXPECT_EQ(line.matchLineString(), u"foo foo\n"_s);
    EXPECT_EQ(line.numberOfReplacedMatches(), 0U);

    window.replaceAll(u"baz"_s);
    window.sheet()->close();
    EXPECT_EQ(folder.read("b"), "baz baz\n");
    EXPECT_EQ(folder.read("a"), changed);
    // What single replacements do isn't undone with the run.
    window.outline()->selectRow(4);
    window.controller().actions().replace->trigger();
    EXPECT_EQ(links(window)->accessibleName(), u"2 files failed"_s);
}

TEST_F(UndoCommandsTest, TheJournalIsReadWhenSomebodyWantsToKnow)
{
    const TemporaryFolder state;
    const UndoJournalFolder journal(state.path());
    folder.write("a", "foo\n");
    OpenWindow first(application);
    first.searchIn(folder.path(), u"foo"_s);
    first.search();
    first.replaceAll(u"bar"_s);
    OpenWindow second(application);
    second.searchIn(folder.path(), u"foo"_s);
    second.search();
    QAction &undo = *second.controller().actions().undoReplacing;
    EXPECT_EQ(undo.text(), u"&Undo Replacing"_s);
    EXPECT_TRUE(undo.isEnabled());
    second.controller().resultsPane().undoCommands().update();
    EXPECT_EQ(undo.text(), u"&Undo Replacing in 1 File"_s);
    undo.trigger();
    EXPECT_EQ(folder.read("a"), "foo\n");
    EXPECT_FALSE(undo.isEnabled());
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
