#include "support/gui/OpenWindow.h"
#include "window/form/LeaveOutForm.h"

#include <QLabel>

namespace tidemark::test {

namespace {

class LeaveOutTest : public WindowTest
{
protected:
    static QString patterns()
    {
        return UserDefaults::standard().stringForKey(TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS);
    }
    static QLabel *link(OpenWindow &window)
    {
        return window.outline()->findChild<QLabel *>(u"searchEverythingLabel"_s);
    }
};

TEST_F(LeaveOutTest, TheLineOpensAndStaysOpen)
{
    OpenWindow one(application);
    EXPECT_FALSE(one.ui().leaveOutComboBox->isVisible());
    one.ui().moreButton->click();
    EXPECT_TRUE(one.ui().leaveOutComboBox->isVisible());
    EXPECT_TRUE(one.ui().largestSizeSpinBox->isVisible());
    OpenWindow two(application);
    EXPECT_TRUE(two.ui().leaveOutComboBox->isVisible());
    two.ui().hiddenFilesCheckBox->click();
    EXPECT_TRUE(one.ui().hiddenFilesCheckBox->isChecked());
    two.ui().moreButton->click();
    EXPECT_FALSE(one.ui().leaveOutComboBox->isVisible());
    EXPECT_EQ(one.ui().moreButton->text(), u"&More •"_s) << "something is in force";
}

TEST_F(LeaveOutTest, FieldAndSettingAreTheSameAndFaultsAreTold)
{
    OpenWindow window(application);
    window.ui().moreButton->click();
    QLineEdit *field = window.ui().leaveOutComboBox->lineEdit();
    ElidedLabel *message = window.ui().leaveOutMessageLabel;
    QTest::keyClicks(field, u"*.o ![a"_s);
    EXPECT_EQ(patterns(), u"*.o ![a"_s);
    EXPECT_TRUE(message->isVisible());
    EXPECT_EQ(message->wholeText(), u"“![a” matches nothing: its bracket is not closed."_s);
    QTest::keyClick(field, ']');
    EXPECT_FALSE(message->isVisible());
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS, u"x/"_s);
    EXPECT_EQ(field->text(), u"x/"_s);
}

TEST_F(LeaveOutTest, SizesAreInMegabytesAndOffAtFirst)
{
    const QString key = TD_USER_DEFAULTS_NAME_LARGEST_FILE_SIZE;
    UserDefaults &settings = UserDefaults::standard();
    OpenWindow window(application);
    window.ui().moreButton->click();
    window.ui().largestSizeCheckBox->click();
    EXPECT_EQ(settings.integerForKey(key), 100'000'000);
    window.ui().largestSizeSpinBox->setValue(5);
    EXPECT_EQ(settings.integerForKey(key), 5'000'000);
    window.ui().largestSizeCheckBox->click();
    EXPECT_EQ(settings.integerForKey(key), 0);
    settings.setObject(key, 1'234'567);
    EXPECT_EQ(window.ui().largestSizeSpinBox->value(), 1);
    EXPECT_EQ(settings.integerForKey(key), 1'234'567) << "nobody changed it";
}

TEST_F(LeaveOutTest, TheStatusLineEndsWithWhatWasLeftOut)
{
    for (const char *name : {"a.txt", "b/c.txt", "b/d.o", ".e", "f.png"})
        folder.write(name, "needle\n");
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS, u"*.o"_s);
    OpenWindow window(application);
    window.searchIn(folder.path(), u"needle"_s);
    window.search();
    QToolButton *button = window.ui().leftOutButton;
    ASSERT_TRUE(button->isVisible());
    EXPECT_EQ(button->text(), u" • 3 left out"_s);
    EXPECT_EQ(window.document.resultsStatusText(),
              u"Search completed (2 matches found in 2 files • 2 files searched)"_s);
    button->click();
    QWidget *popover = button->findChild<QWidget *>(u"leftOutPopover"_s);
    ASSERT_NE(popover, nullptr);
    EXPECT_EQ(
        popover->findChild<QLabel *>()->text(),
        u"Other kinds of files: 1\nPattern “*.o”: 1\nHidden: 1\nA folder that is left out counts once."_s);
    popover->close();
    EXPECT_EQ(window.ui().leaveOutComboBox->itemText(0), u"*.o"_s);
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS, u"f.png .e d.o"_s);
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_SEARCH_HIDDEN_FILES, true);
    window.searchIn(folder.path("b/c.txt"), u"needle"_s);
    window.search();
    EXPECT_FALSE(button->isVisible());
}

TEST_F(LeaveOutTest, EmptyResultsOfferToSearchEverything)
{
    folder.write("a.txt", "no\n");
    folder.write(".b/c.txt", "needle\n");
    folder.write("d.png", "needle\n");
    OpenWindow window(application);
    window.searchIn(folder.path(), u"needle"_s);
    window.search();
    ASSERT_TRUE(link(window)->isVisible());
    EXPECT_TRUE(link(window)->text().startsWith(u"No matches in 1 file. 2 files were left out…"_s));
    Q_EMIT link(window)->linkActivated(u"everything"_s);
    ASSERT_TRUE(waitFor([&] { return !window.controller().searching(); }));
    EXPECT_FALSE(link(window)->isVisible());
    EXPECT_EQ(window.document.findResults().count(), 2);
    EXPECT_FALSE(UserDefaults::standard().boolForKey(TD_USER_DEFAULTS_NAME_SEARCH_HIDDEN_FILES));
    window.search();
    EXPECT_EQ(window.document.findResults().count(), 0) << "once only";

    window.controller().startSearch(StartStopButton::On);
    window.controller().stopSearch();
    const QString stopped = u"The search was stopped before it found anything."_s;
    EXPECT_TRUE(waitFor([&] { return window.outline()->hintText() == stopped; }));
    EXPECT_FALSE(link(window)->isVisible()) << "nobody knows yet what it leaves out";
}

TEST_F(LeaveOutTest, ResultsOfferPatterns)
{
    folder.write("top.txt", "needle\n");
    folder.write("a b/c/d.min.js", "needle\n");
    OpenWindow window(application);
    window.searchIn(folder.path(), u"needle"_s);
    window.search();
    ResultsActions &actions = window.controller().resultsPane().resultsActions();
    actions.leaveOutFolderAction()->trigger();
    EXPECT_EQ(patterns(), u"/a\\ b/c/"_s);
    EXPECT_TRUE(window.ui().leaveOutComboBox->isVisible());
    actions.leaveOutFilesLikeAction()->trigger();
    EXPECT_EQ(patterns(), u"/a\\ b/c/ *.js"_s);
    window.controller().resultsPane().navigation().moveToNextMatch();
    EXPECT_FALSE(actions.leaveOutFolderAction()->isEnabled()) << "it is the location";
    window.search();
    EXPECT_EQ(window.document.findResults().count(), 1);
}

} // namespace

} // namespace tidemark::test
