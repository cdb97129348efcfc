#include "app/TDApplicationController.h"

#include "support/gui/WindowFixture.h"
#include "ui_MyDocument.h"

#include <QMenuBar>
#include <QMessageBox>
#include <QSet>

using namespace Qt::Literals::StringLiterals;

namespace tidemark::test {

namespace {

class TDApplicationControllerTest : public WindowTest
{
protected:
    TDApplicationControllerTest() { controller.awakeFromNib(); }
    ~TDApplicationControllerTest() override { setKindsInForce(Kind::defaultKinds()); }

    TDApplicationController controller;
};

void collectShortcuts(const QMenu *menu, QStringList &shortcuts)
{
    const QList<QAction *> actions = menu->actions();
    for (const QAction *action : actions) {
        if (action->menu() != nullptr)
            collectShortcuts(action->menu(), shortcuts);
        const QList<QKeySequence> keys = action->shortcuts();
        for (const QKeySequence &key : keys)
            shortcuts << key.toString();
    }
}

TEST_F(TDApplicationControllerTest, StartingPlainlyOpensOneUntitledDocument)
{
    EXPECT_EQ(controller.openUntitledDocument(u"public.text"_s), nullptr);
    controller.applicationDidFinishLaunching();
    controller.applicationDidFinishLaunching();
    ASSERT_EQ(controller.documents().size(), 1);
    MyDocument *document = controller.documents()[0];
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
    MyDocument *document = controller.openUntitledDocument(TD_DOCUMENT_TYPE);
    controller.setCountBusyWindows(1);
    EXPECT_EQ(controller.applicationShouldTerminate(), TerminateReply::Later);
    QMessageBox *question = nullptr;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (widget->objectName() == "stopReplaceQuestion"_L1)
            question = qobject_cast<QMessageBox *>(widget);
    }
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(question->defaultButton()->text(), u"Continue Replace and Don‘t Quit"_s);
    QTest::keyClick(question, Qt::Key_Escape);
    EXPECT_FALSE(document->myDocumentController()->stopReplace());
    EXPECT_EQ(controller.documents().size(), 1);
}

TEST_F(TDApplicationControllerTest, KindsAreKeptBetweenRuns)
{
    QList<Kind> kinds = controller.kinds();
    EXPECT_EQ(kinds, Kind::defaultKinds());
    kinds.last().include = true;
    controller.setKinds(kinds);
    controller.applicationWillTerminate();
    setKindsInForce({});
    TDApplicationController next;
    next.awakeFromNib();
    EXPECT_EQ(next.kinds(), kinds);
}

TEST_F(TDApplicationControllerTest, AfterHidingOnlySearchingWindowsShowTheirProgress)
{
    MyDocument *idle = controller.openUntitledDocument(TD_DOCUMENT_TYPE);
    MyDocument *searching = controller.openUntitledDocument(TD_DOCUMENT_TYPE);
    const auto isShown = [](MyDocument *document) {
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
    MyDocument *document = controller.openUntitledDocument(TD_DOCUMENT_TYPE);
    QStringList shortcuts;
    const QList<QAction *> menus = document->myDocumentController()->window()->menuBar()->actions();
    EXPECT_EQ(menus.size(), 6);
    for (const QAction *menu : menus)
        collectShortcuts(menu->menu(), shortcuts);
    EXPECT_EQ(QSet<QString>(shortcuts.begin(), shortcuts.end()).size(), shortcuts.size());
}

TEST_F(TDApplicationControllerTest, VersionsAreSpelledOut)
{
    EXPECT_EQ(TDApplicationController::productVersion(), u"Version 2012.234"_s);
    EXPECT_EQ(TDApplicationController::productNameAndVersion(), u"Velkor Tidemark 2012"_s);
}

} // namespace

} // namespace tidemark::test
