#include "app/InterruptedRewritesQuestion.h"

#include "replace/RewriteRecord.h"
#include "support/TemporaryFolder.h"
#include "support/gui/WindowFixture.h"

#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

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
        _backup = _state.write("<b>&half %1.txt.TDMBackup.abc", "half of it and the rest");
        RewriteRecord record(_state.path("state"));
        record.noteRewrites({{_file, _backup, {100, 1}, false}});
    }
    /// Null when nothing is asked.
    QMessageBox *ask()
    {
        askAboutInterruptedRewrites(&_window, std::make_unique<InterruptedRewrites>(_state.path("state")));
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

    TemporaryFolder _state;
    FilePath _file;
    FilePath _backup;
    QWidget _window;
};

TEST_F(InterruptedRewritesQuestionTest, OldContentIsPutBackWithoutItsBackupAndNotAskedForAgain)
{
    choose(u"Put Old Content Back"_s);
    EXPECT_EQ(contentOfFile(_file), "half of it and the rest");
    EXPECT_EQ(_state.names(), (QList<QByteArray>{"<b>&half %1.txt", "state"}));
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
    EXPECT_EQ(::unlink(_file.cString()), 0);
    _state.makeFolder("<b>&half %1.txt");
    choose(u"Put Old Content Back"_s);
    const auto *box = _window.findChild<QMessageBox *>();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->detailedText().contains(_backup.displayText()));
    EXPECT_EQ(contentOfFile(_backup), "half of it and the rest");
}

} // namespace
} // namespace tidemark::test
