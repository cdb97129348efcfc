#include "app/InterruptedRewritesQuestion.h"

#include "replace/RewriteRecord.h"
#include "replace/UndoJournal.h"
#include "replace/UndoStepWriter.h"
#include "support/TemporaryFolder.h"
#include "support/gui/WindowFixture.h"

#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace tidemark::test {
namespace {

class InterruptedRewritesQuestionTest : public testing::Test
{
protected:
    InterruptedRewritesQuestionTest()
    {
        _state.makeFolder("state");
        _file = _state.write("<b>&half %1.txt", "half");
        _backup = _state.write("<b>&half %1.txt.TDMBackup.abc", OLD);
        record({});
    }
    void record(RunProgress progress)
    {
        struct stat status = {};
        EXPECT_EQ(::lstat(_file.cString(), &status), 0);
        int errorNumber = 0;
        const auto record = RewriteRecord::recordInFolder(_state.path("state"), progress, errorNumber);
        EXPECT_EQ(record->noteRewrites({{_file, _backup, FileState::fromStatus(status), digestOfBytes(OLD),
                                         digestOfBytes("the new content"), false}}),
                  0);
    }
    /// Null when nothing is asked.
    QMessageBox *ask()
    {
        askAboutInterruptedRewrites(&_window, std::make_shared<InterruptedRewrites>(_state.path("state")),
                                    _worker);
        const auto boxes = _window.findChildren<QMessageBox *>();
        return boxes.isEmpty() ? nullptr : boxes.last();
    }
    void choose(const QString &title)
    {
        const QPointer<QMessageBox> box = ask();
        ASSERT_NE(box, nullptr);
        EXPECT_TRUE(box->informativeText().contains(u"<b>&half %1.txt\n"_s));
        EXPECT_TRUE(box->detailedText().contains(_backup.displayText()));
        const auto buttons = box->buttons();
        const auto button = std::find_if(buttons.begin(), buttons.end(),
                                         [&](const auto *each) { return each->text() == title; });
        ASSERT_NE(button, buttons.end());
        QTest::mouseClick(*button, Qt::LeftButton);
        ASSERT_TRUE(waitFor([&] { return box.isNull(); }));
    }

    const QByteArray OLD = "half of it and the rest";
    TemporaryFolder _state;
    FilePath _file;
    FilePath _backup;
    QWidget _window;
    WorkerThreads _worker{1};
};

TEST_F(InterruptedRewritesQuestionTest, OldContentIsPutBackAndWhatStoodThereIsKept)
{
    choose(u"Put Old Content Back"_s);
    ASSERT_TRUE(waitFor([&] { return QDir(_state.path("state").displayText()).isEmpty(QDir::Files); }));
    EXPECT_EQ(contentOfFile(_file), OLD);
    ASSERT_EQ(_state.names().size(), 3);
    EXPECT_EQ(_state.read(_state.names()[1]), "half");
    EXPECT_EQ(ask(), nullptr);
}

TEST_F(InterruptedRewritesQuestionTest, KeptFilesKeepTheirBackupsAndAreNotAskedForAgain)
{
    choose(u"Keep Files As They Are"_s);
    EXPECT_EQ(contentOfFile(_file), "half");
    EXPECT_EQ(contentOfFile(_backup), "half of it and the rest");
    EXPECT_EQ(ask(), nullptr);
}

TEST_F(InterruptedRewritesQuestionTest, EscapeLeavesTheDecisionToTheNextStart)
{
    const QPointer<QMessageBox> box = ask();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(ask(), box) << "the records are locked while the question stands";
    QTest::keyClick(box, Qt::Key_Escape);
    ASSERT_TRUE(waitFor([&] { return box.isNull(); }));
    choose(u"Put Old Content Back"_s);
}

TEST_F(InterruptedRewritesQuestionTest, WhatCantBePutBackIsToldAndStays)
{
    const QPointer<QMessageBox> question = ask();
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(::unlink(_file.cString()), 0);
    _state.makeFolder("<b>&half %1.txt");
    QTest::mouseClick(question->defaultButton(), Qt::LeftButton);
    ASSERT_TRUE(waitFor([&] { return question.isNull() && _window.findChild<QMessageBox *>() != nullptr; }));
    EXPECT_TRUE(_window.findChild<QMessageBox *>()->detailedText().contains(_backup.displayText()));
    EXPECT_EQ(contentOfFile(_backup), OLD);
}

TEST_F(InterruptedRewritesQuestionTest, WhatNobodyCanDecideIsTold)
{
    // The backup holds something else; a run was cut short, which another record tells.
    writeFile(_backup, "");
    InterruptedRewrites(_state.path("state")).keep();
    record({341, 30000});
    QPointer<QMessageBox> told = ask();
    ASSERT_NE(told, nullptr);
    EXPECT_TRUE(told->informativeText().contains(u"341 of 30000 files were done."_s));
    EXPECT_TRUE(told->informativeText().contains(_file.displayText()));
    EXPECT_EQ(told->buttons().size(), 2) << "details and OK";
    QTest::mouseClick(told->button(QMessageBox::Ok), Qt::LeftButton);
    ASSERT_TRUE(waitFor([&] { return told.isNull(); }));
    EXPECT_EQ(contentOfFile(_file), "half");
    EXPECT_EQ(ask(), nullptr);
}

TEST_F(InterruptedRewritesQuestionTest, AllOfTheRunCanBeUndone)
{
    const TemporaryFolder undo;
    const UndoJournalFolder folder(undo.path());
    const auto writer = UndoJournal::current()->newStep(u"find %1"_s, u"instead"_s);
    UndoEntry entry;
    entry.path = _file;
    EXPECT_EQ(writer->append({entry}, {}), 0);
    writer->noteDone(1);
    const QByteArray step = writer->id();
    EXPECT_EQ(writer->close(), UndoKeeping::Kept);
    record({1, 2});
    QByteArrayList undone;
    askAboutInterruptedRewrites(&_window, std::make_shared<InterruptedRewrites>(_state.path("state")),
                                _worker, [&](const QByteArray &id) {
                                    EXPECT_EQ(contentOfFile(_file), OLD) << "first of all";
                                    undone << id;
                                });
    auto *box = _window.findChild<QMessageBox *>();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->informativeText().contains(u"Find text: ‘find %1’\nReplace text: ‘instead’"_s));
    EXPECT_EQ(box->defaultButton()->text(), u"Put Old Content Back"_s);
    for (QAbstractButton *button : box->buttons()) {
        if (button->text() == u"Undo the Whole Run"_s)
            QTest::mouseClick(button, Qt::LeftButton);
    }
    EXPECT_TRUE(waitFor([&] { return undone == QByteArrayList{step}; }));
}

} // namespace
} // namespace tidemark::test
