#include "foundation/TDFileCommon.h"
#include "foundation/UserDefaults.h"
#include "support/TemporaryFolder.h"
#include "window/ErrorSheet.h"
#include "window/ResultsFixture.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tidemark {

using test::ResultsWindow;
using test::searchedFile;
using test::TemporaryFolder;
using test::waitUntil;

namespace {

class ReplaceCommandsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, false);
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, false);
    }

    /// Real files, searched for "foo" and shown.
    void open(const QList<QByteArray> &contents, const TemporaryFolder &folder)
    {
        FindResultItems files;
        for (qsizetype number = 0; number < contents.size(); ++number)
            files << searchedFile(folder.write(nameOf(number), contents[number]), findText);
        window = std::make_unique<ResultsWindow>(files);
        window->findText = findText;
        window->replaceText = u"bar"_s;
        window->navigation->selectFirstMatch();
    }

    static QByteArray nameOf(qsizetype number) { return "file" + QByteArray::number(number); }

    QMessageBox *sheet() const
    {
        for (QMessageBox *box : window->window.findChildren<QMessageBox *>()) {
            if (box->isVisible())
                return box;
        }
        return nullptr;
    }

    void answer(const QString &buttonText)
    {
        QMessageBox *box = sheet();
        ASSERT_NE(box, nullptr);
        for (QAbstractButton *button : box->buttons()) {
            if (button->text() == buttonText)
                button->click();
        }
        QCoreApplication::processEvents();
    }

    QList<QByteArray> contents(const TemporaryFolder &folder) const
    {
        QList<QByteArray> all;
        for (qsizetype number = 0; number < window->results.count(); ++number)
            all << folder.read(nameOf(number));
        return all;
    }

    QString findText = u"foo"_s;
    std::unique_ptr<ResultsWindow> window;
};

const QList<QByteArray> CONTENTS = {"foo foo\nx\nfoo\n", "a foo b\r\n", "a foo"};
const QList<QByteArray> REPLACED = {"bar bar\nx\nbar\n", "a bar b\r\n", "a bar"};

TEST_F(ReplaceCommandsTest, ReplaceChangesTheHighlightedMatchOnly)
{
    const TemporaryFolder folder;
    open(CONTENTS, folder);
    window->press(Qt::Key_Down);
    window->commands->replace();
    EXPECT_EQ(folder.read("file0"), "foo bar\nx\nfoo\n");
    EXPECT_EQ(window->highlighted(), u"0:0:1"_s);
    EXPECT_EQ(window->busyCount, 0);
}

TEST_F(ReplaceCommandsTest, ReplaceAndFindHeldDownEqualsReplaceAll)
{
    struct HeldDownCase
    {
        QString findText;
        QString replaceText;
        bool isExpression;
    };
    for (const HeldDownCase &test : {HeldDownCase{u"foo"_s, u"foofoo"_s, false},
                                     {u"foo"_s, QString(), false},
                                     {u"(f)(oo)"_s, u"$2$1f"_s, true}}) {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, test.isExpression);
        findText = test.findText;
        const TemporaryFolder heldDown;
        open(CONTENTS, heldDown);
        window->replaceText = test.replaceText;
        for (int press = 0; press < 12; ++press)
            window->commands->replaceAndFind();
        const QList<QByteArray> walked = contents(heldDown);

        const TemporaryFolder atOnce;
        open(CONTENTS, atOnce);
        window->replaceText = test.replaceText;
        window->commands->replaceAll();
        answer(u"Replace All"_s);
        EXPECT_EQ(walked, contents(atOnce)) << qPrintable(test.findText);
    }
}

TEST_F(ReplaceCommandsTest, ReplaceAllAsksTellsAndStandsOnTheFirstMatchAfterwards)
{
    const TemporaryFolder folder;
    open(CONTENTS, folder);
    QSignalSpy replacing(window->commands.get(), &ReplaceCommands::replacing);
    QSignalSpy finished(window->commands.get(), &ReplaceCommands::finished);
    window->commands->replaceAll();
    ASSERT_NE(sheet(), nullptr);
    EXPECT_EQ(sheet()->windowModality(), Qt::WindowModal);
    EXPECT_TRUE(sheet()->informativeText().contains(u"5 matches in 3 files will change."_s));
    EXPECT_EQ(sheet()->defaultButton()->text(), u"Replace All"_s);
    window->commands->replaceAll();
    QTest::keyClick(sheet(), Qt::Key_Escape);
    EXPECT_EQ(contents(folder), CONTENTS);

    window->replaceText.clear();
    window->commands->replaceAll();
    EXPECT_TRUE(sheet()->informativeText().contains(u"will be deleted"_s));
    answer(u"Cancel"_s);
    window->replaceText = u"bar"_s;
    window->commands->replaceAll();
    answer(u"Replace All"_s);
    EXPECT_EQ(contents(folder), REPLACED);
    EXPECT_EQ(window->highlighted(), u"0:0:0"_s);
    EXPECT_EQ(window->selection(), u"0:0"_s);
    EXPECT_EQ(replacing.count(), 2);
    EXPECT_EQ(finished.count(), 1);
    EXPECT_EQ(window->busyCount, 0);
}

TEST_F(ReplaceCommandsTest, ReplaceSelectionAsksUntilToldNotTo)
{
    const TemporaryFolder folder;
    open(CONTENTS, folder);
    window->navigation->showAll();
    window->selectRows({2, 4});
    window->commands->replaceSelection();
    EXPECT_TRUE(sheet()->informativeText().contains(u"2 matches in 2 files will change."_s));
    sheet()->checkBox()->setChecked(true);
    answer(u"Cancel"_s);
    EXPECT_EQ(contents(folder), CONTENTS);
    EXPECT_TRUE(ReplaceCommands::suppressAlertReplaceSelection());
    window->commands->replaceSelection();
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_EQ(contents(folder), QList<QByteArray>({"foo foo\nx\nbar\n", "a bar b\r\n", "a foo"}));
}

TEST_F(ReplaceCommandsTest, FailedFilesAreListedOnceAndComeBackAsTheyWere)
{
    const TemporaryFolder folder;
    open(CONTENTS, folder);
    test::writeFile(folder.path("file0"), "changed outside, foo\n");
    test::setModificationDate(folder.path("file0"), 1234567890);
    const QByteArray aside = folder.read("file2");
    EXPECT_EQ(::unlink(folder.path("file2").cString()), 0);
    window->commands->replaceAll();
    answer(u"Replace All"_s);
    ASSERT_NE(sheet(), nullptr);
    EXPECT_TRUE(sheet()->text().contains(u"file0, file2"_s)) << qPrintable(sheet()->text());
    EXPECT_EQ(folder.read("file0"), "changed outside, foo\n");
    EXPECT_EQ(folder.read("file1"), REPLACED[1]);
    EXPECT_EQ(window->lines(0), QStringList({u"foo foo\n"_s, u"foo\n"_s}));
    EXPECT_EQ(window->lines(2), QStringList(u"a foo"_s));
    sheet()->close();
    EXPECT_EQ(sheet(), nullptr);

    test::writeFile(folder.path("file0"), CONTENTS[0]);
    window->results.files()[0]->setModificationDate(TDFileCommon::fileModificationDate(folder.path("file0")));
    test::writeFile(folder.path("file2"), aside);
    window->results.files()[2]->setModificationDate(TDFileCommon::fileModificationDate(folder.path("file2")));
    window->commands->replaceAll();
    answer(u"Replace All"_s);
    EXPECT_EQ(contents(folder), REPLACED);
}

TEST_F(ReplaceCommandsTest, FaultyExpressionIsShownAndChangesNothing)
{
    const TemporaryFolder folder;
    open(CONTENTS, folder);
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, true);
    window->findText = u"(foo"_s;
    window->commands->replace();
    ASSERT_NE(sheet(), nullptr);
    EXPECT_TRUE(sheet()->text().contains(u"malformed"_s));
    EXPECT_EQ(contents(folder), CONTENTS);
}

TEST_F(ReplaceCommandsTest, StopEndsTheRunBetweenFiles)
{
    const TemporaryFolder folder;
    open(QList<QByteArray>(40, "foo\n"), folder);
    QSignalSpy shownAnew(&window->model, &ResultsTreeModel::dataChanged);
    QObject::connect(window->commands.get(), &ReplaceCommands::progressed,
                     [this, &shownAnew](quint64 done, quint64 count) {
                         EXPECT_TRUE(done == 0 || !shownAnew.isEmpty());
                         shownAnew.clear();
                         EXPECT_EQ(count, 40U);
                         EXPECT_TRUE(window->commands->isReplacing());
                         if (done == 1)
                             window->commands->setStopReplace(true);
                         window->commands->replaceAll();
                         EXPECT_EQ(sheet(), nullptr);
                         window->navigation->removeSelected();
                     });
    window->commands->replaceAll();
    answer(u"Replace All"_s);
    EXPECT_EQ(contents(folder), QList<QByteArray>({"bar\n"}) + QList<QByteArray>(39, "foo\n"));
    EXPECT_EQ(window->results.count(), 40);
    EXPECT_EQ(window->busyCount, 0);
}

TEST_F(ReplaceCommandsTest, RunSurvivesThatItsObjectGoesAway)
{
    const TemporaryFolder folder;
    open(QList<QByteArray>(10, "foo\n"), folder);
    QObject::connect(window->commands.get(), &ReplaceCommands::progressed, [this](quint64 done) {
        if (done == 1)
            QMetaObject::invokeMethod(
                window->navigation.get(), [this] { window->commands.reset(); }, Qt::QueuedConnection);
    });
    window->commands->replaceAll();
    answer(u"Replace All"_s);
    EXPECT_EQ(window->commands, nullptr);
    EXPECT_EQ(contents(folder), QList<QByteArray>({"bar\n"}) + QList<QByteArray>(9, "foo\n"));
    EXPECT_EQ(window->busyCount, 0);
}

TEST(ErrorSheet, ShowsFileNamesAsTheyAre)
{
    QWidget window;
    window.show();
    const TDError error =
        TDError::initalizePresentErrorWithCode(TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_NOT_WRITABLE_ERROR,
                                               u"Description"_s, u"<b>not bold</b>"_s, u"Suggestion"_s);
    const QMessageBox *sheet = presentErrorSheet(&window, error);
    EXPECT_TRUE(sheet->text().contains(u"<b>not bold</b>"_s));
    for (const QLabel *label : sheet->findChildren<QLabel *>()) {
        EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText)
            << qPrintable(label->text());
    }
    EXPECT_EQ(sheet->informativeText(), u"Suggestion"_s);
}

} // namespace

} // namespace tidemark
