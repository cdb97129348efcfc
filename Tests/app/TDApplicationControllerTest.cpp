#include "app/AppTest.h"
#include "ui_MyDocument.h"

#include <QMenuBar>
#include <QMessageBox>

namespace tidemark::test {

namespace {

using TDApplicationControllerTest = AppTest;

TEST_F(TDApplicationControllerTest, StartingPlainlyOpensOneUntitledDocument)
{
    EXPECT_EQ(controller.openUntitledDocument(u"public.text"_s), nullptr);
    controller.applicationDidFinishLaunching();
    controller.applicationDidFinishLaunching();
    ASSERT_EQ(controller.documents().size(), 1);
    WindowedDocument *document = controller.documents()[0];
    EXPECT_EQ(document->myDocumentController()->window()->windowTitle(), u"Velkor Tidemark"_s);
    document->myDocumentController()->window()->close();
    EXPECT_TRUE(controller.documents().isEmpty());
}

TEST_F(TDApplicationControllerTest, QuittingSavesEveryWindowTheLastOneFirst)
{
    controller.openUntitledDocument(TD_DOCUMENT_TYPE)->setFindText(u"first"_s);
    controller.openUntitledDocument(TD_DOCUMENT_TYPE)->setFindText(u"second"_s);
    EXPECT_EQ(controller.applicationShouldTerminate(), TerminateReply::Now);
    EXPECT_EQ(UserDefaults::standard().stringForKey(TD_USER_DEFAULTS_NAME_FIND_TEXT), u"first"_s);
}

TEST_F(TDApplicationControllerTest, QuittingAsksWhileAReplaceRuns)
{
    WindowedDocument *document = controller.openUntitledDocument(TD_DOCUMENT_TYPE);
    controller.setCountBusyWindows(1);
    EXPECT_EQ(controller.applicationShouldTerminate(), TerminateReply::Later);
    auto *question = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(question->defaultButton()->text(), u"Continue Replace and Don‘t Quit"_s);
    QTest::keyClick(question, Qt::Key_Escape);
    EXPECT_FALSE(document->myDocumentController()->stopReplace());
    EXPECT_EQ(controller.documents().size(), 1);
}

TEST_F(TDApplicationControllerTest, AfterHidingOnlySearchingWindowsShowTheirProgress)
{
    WindowedDocument *idle = controller.openUntitledDocument(TD_DOCUMENT_TYPE);
    WindowedDocument *searching = controller.openUntitledDocument(TD_DOCUMENT_TYPE);
    const auto isShown = [](WindowedDocument *document) {
        return !document->myDocumentController()->window()->ui().progressIndicator->isHidden();
    };
    searching->myDocumentController()->startSearch(StartStopButton::On);
    EXPECT_TRUE(isShown(searching));
    controller.applicationWillHide();
    EXPECT_FALSE(isShown(searching));
    controller.applicationDidUnhide();
    EXPECT_TRUE(isShown(searching));
    EXPECT_FALSE(isShown(idle));
}

TEST_F(TDApplicationControllerTest, NoTwoMenuEntriesShareAKey)
{
    const SearchWindow *window =
        controller.openUntitledDocument(TD_DOCUMENT_TYPE)->myDocumentController()->window();
    EXPECT_EQ(window->menuBar()->actions().size(), 6);
    QStringList shortcuts;
    for (const QMenu *menu : window->menuBar()->findChildren<QMenu *>()) {
        for (const QAction *action : menu->actions())
            shortcuts += QKeySequence::listToString(action->shortcuts()).split(u"; "_s, Qt::SkipEmptyParts);
    }
    EXPECT_GT(shortcuts.size(), 20);
    EXPECT_EQ(shortcuts.removeDuplicates(), 0);
}

} // namespace

} // namespace tidemark::test
