#include "support/gui/OpenWindow.h"

#include "replace/UndoJournal.h"
#include "window/BackupsDialog.h"
#include "window/HistoryDialog.h"

#include <QPushButton>
#include <QTreeWidget>

namespace tidemark::test {

namespace {

class HistoryDialogTest : public WindowTest
{
protected:
    /// One run with a backup each over two files.
    void replace(OpenWindow &window)
    {
        folder.write("a", "foo\n");
        folder.write("b", "foo foo\n");
        window.searchIn(folder.path(), u"foo"_s);
        window.search();
        window.replaceAll(u"bar"_s);
        ASSERT_TRUE(
            waitFor([&] { return folder.read("b") == "bar bar\n" && !window.controller().isReplacing(); }));
    }
    static QPushButton *button(QDialog &dialog, const QString &text)
    {
        for (QPushButton *candidate : dialog.findChildren<QPushButton *>()) {
            if (candidate->text() == text)
                return candidate;
        }
        return nullptr;
    }

    TemporaryFolder state;
    UndoJournalFolder journal{state.path()};
};

TEST_F(HistoryDialogTest, StepsAreListedTakenBackAndForgotten)
{
    OpenWindow window(application);
    replace(window);
    auto *dialog = new HistoryDialog(window.window());
    const auto *steps = dialog->findChild<QTreeWidget *>();
    ASSERT_EQ(steps->topLevelItemCount(), 1);
    EXPECT_EQ(steps->topLevelItem(0)->text(1), u"foo → bar"_s);
    EXPECT_EQ(steps->topLevelItem(0)->text(2) + steps->topLevelItem(0)->text(3), u"23"_s);
    UndoCommands &undo = window.controller().resultsPane().undoCommands();
    QObject::connect(dialog, &HistoryDialog::takeBackRequested, &undo, &UndoCommands::takeBack);
    button(*dialog, u"&Undo"_s)->click();
    EXPECT_EQ(folder.read("b"), "foo foo\n");
    auto *again = new HistoryDialog(window.window());
    EXPECT_EQ(again->findChild<QTreeWidget *>()->topLevelItem(0)->text(5), u"Undone"_s);
    EXPECT_NE(button(*again, u"&Redo"_s), nullptr);
    button(*again, u"&Forget"_s)->click();
    EXPECT_EQ(again->findChild<QTreeWidget *>()->topLevelItemCount(), 0);
    EXPECT_FALSE(button(*again, u"&Undo"_s)->isEnabled());
    again->close();
}

TEST_F(HistoryDialogTest, OnlyTheBackupsThatWereMadeAreDeleted)
{
    OpenWindow window(application);
    replace(window);
    const QList<QByteArray> names = folder.names();
    const auto backupOf = [&names](const QByteArray &name) {
        for (const QByteArray &candidate : names) {
            if (candidate.startsWith(name + ".TDMBackup."))
                return candidate;
        }
        return QByteArray();
    };
    ASSERT_FALSE(backupOf("a").isEmpty() || backupOf("b").isEmpty());
    auto *dialog = new BackupsDialog(window.window());
    auto *runs = dialog->findChild<QTreeWidget *>();
    ASSERT_EQ(runs->topLevelItemCount(), 1);
    ASSERT_EQ(runs->topLevelItem(0)->childCount(), 2);
    EXPECT_FALSE(button(*dialog, u"&Delete Ticked"_s)->isEnabled());
    folder.write(backupOf("a"), "fox\n");
    runs->topLevelItem(0)->setCheckState(0, Qt::Checked);
    button(*dialog, u"&Delete Ticked"_s)->click();
    EXPECT_TRUE(folder.names().contains(backupOf("a")));
    EXPECT_FALSE(folder.names().contains(backupOf("b")));
    dialog->close();
}

} // namespace

} // namespace tidemark::test
