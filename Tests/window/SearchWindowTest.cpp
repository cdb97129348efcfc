#include "support/gui/OpenWindow.h"

#include <QClipboard>

namespace tidemark::test {

namespace {

class SearchWindowTest : public WindowTest
{
protected:
    void writeFiles(int count, const QByteArray &content)
    {
        for (int file = 0; file < count; ++file)
            folder.write("tree/" + QByteArray::number(file / 100) + '/' + QByteArray::number(file) + ".txt",
                         content);
    }
};

TEST_F(SearchWindowTest, EveryToolTipIsShownWithThisSystemsKeys)
{
    OpenWindow window(application);
    int toolTips = 0;
    for (const QWidget *widget : window.window()->findChildren<QWidget *>()) {
        toolTips += widget->toolTip().isEmpty() ? 0 : 1;
        EXPECT_FALSE(widget->toolTip().contains("Cmd"_L1)) << widget->objectName().toStdString();
    }
    EXPECT_GE(toolTips, 20);
}

TEST_F(SearchWindowTest, ReturnInFindSearchesForWhatWasTyped)
{
    folder.write("a.txt", "needle\n");
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_FIND_TEXT_HISTORY,
                                       QStringList{u"NEEDLE in full"_s});
    OpenWindow window(application);
    window.searchIn(folder.path(), u"old"_s);
    window.window()->setFocus();
    window.find()->setFocus();
    window.find()->selectAll();
    QTest::keyClicks(window.find(), u"NEEDLE"_s);
    // Nothing is completed from the history.
    EXPECT_EQ(window.find()->text(), u"NEEDLE"_s);
    QTest::keyClick(window.find(), Qt::Key_Return);
    EXPECT_EQ(window.ui().startStopButton->text(), u"Stop Search"_s);
    ASSERT_TRUE(waitFor([&] { return !window.controller().searching(); }));
    EXPECT_EQ(window.ui().startStopButton->text(), u"Start Search"_s);
    EXPECT_EQ(window.document.findResults().count(), 1);
    EXPECT_EQ(window.find()->text(), u"NEEDLE"_s);
    EXPECT_TRUE(window.ui().searchResultsOutlineView->hasFocus());
    EXPECT_EQ(window.ui().findTextComboBox->itemText(0), u"NEEDLE"_s);
    EXPECT_EQ(window.ui().findTextComboBox->count(), 2);
}

TEST_F(SearchWindowTest, TheFilesOfASmallSearchArriveExpanded)
{
    folder.write("a", QByteArray("foo\n").repeated(150));
    folder.write("b", QByteArray("foo\n").repeated(49));
    folder.write("c", "foo\n");
    for (const bool expands : {true, false}) {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_EXPAND_RESULTS, expands);
        OpenWindow window(application);
        window.searchIn(folder.path(), u"foo"_s);
        for (int round = 0; round < 2; ++round) {
            window.search();
            EXPECT_EQ(window.outline()->numberOfExpandedFiles(), expands ? 2 : 1);
            EXPECT_EQ(window.outline()->numberOfRows(), expands ? 202 : 153);
        }
    }
}

TEST_F(SearchWindowTest, OptionsFollowTheSettingsInEveryWindow)
{
    OpenWindow one(application);
    OpenWindow two(application);
    EXPECT_TRUE(one.ui().ignoreCaseCheckBox->isChecked());
    QTest::mouseClick(one.ui().ignoreCaseCheckBox, Qt::LeftButton, {},
                      QPoint(8, one.ui().ignoreCaseCheckBox->height() / 2));
    EXPECT_FALSE(two.ui().ignoreCaseCheckBox->isChecked());
    EXPECT_FALSE(two.controller().actions().ignoreCase->isChecked());
    two.controller().actions().regularExpression->trigger();
    EXPECT_TRUE(one.ui().regularExpressionCheckBox->isChecked());
    EXPECT_TRUE(UserDefaults::standard().boolFor(BooleanSetting::RegularExpression));
}

TEST_F(SearchWindowTest, UnicodeGoesWithExpressionsOnly)
{
    OpenWindow window(application);
    EXPECT_FALSE(window.ui().unicodeCheckBox->isEnabled());
    EXPECT_FALSE(window.controller().actions().unicode->isEnabled());
    window.controller().actions().regularExpression->trigger();
    EXPECT_TRUE(window.ui().unicodeCheckBox->isEnabled());
    window.find()->setFocus();
    QTest::keyClick(window.find(), Qt::Key_U, Qt::ControlModifier);
    QTest::keyClick(window.find(), Qt::Key_D, Qt::ControlModifier);
    EXPECT_TRUE(window.ui().unicodeCheckBox->isChecked());
    EXPECT_TRUE(UserDefaults::standard().boolFor(BooleanSetting::UnicodeRegularExpression));
    EXPECT_TRUE(UserDefaults::standard().boolFor(BooleanSetting::WholeWords));
}

TEST_F(SearchWindowTest, FaultsAreToldBelowTheirFieldWhileTyping)
{
    OpenWindow window(application);
    const auto shown = [](const ElidedLabel *label) {
        return label->isVisible() ? label->wholeText() : QString();
    };
    const ElidedLabel *find = window.ui().findMessageLabel;
    const ElidedLabel *replace = window.ui().replaceMessageLabel;
    window.document.setFindText(u"é(a"_s);
    EXPECT_EQ(shown(find), QString());
    window.controller().actions().regularExpression->trigger();
    EXPECT_TRUE(shown(find).startsWith(u"At character "_s)) << shown(find).toStdString();
    window.controller().actions().unicode->trigger();
    EXPECT_EQ(shown(find), u"At character 4: missing closing parenthesis   é(a\u2038"_s);
    window.document.setFindText(u"é(a)"_s);
    window.document.setReplaceText(u"é$2"_s);
    EXPECT_EQ(shown(find), QString());
    EXPECT_EQ(shown(replace), u"At character 2: the find text has no such group   é\u2038$2"_s);
    window.document.setReplaceText(u"$1"_s);
    EXPECT_EQ(shown(replace), QString());
}

TEST_F(SearchWindowTest, ShiftedMatchesAreToldAndTheLinkSearchesAgain)
{
    OpenWindow window(application);
    folder.write("file.txt", "é needle and more\n");
    window.searchIn(folder.path(), u"needle"_s);
    const auto search = [&] {
        window.controller().startSearch(StartStopButton::On);
        return waitFor([&] { return !window.controller().searching(); });
    };
    QLabel *notice = window.ui().shiftedMatchesLabel;
    ASSERT_TRUE(search());
    EXPECT_FALSE(notice->isVisible()); // plain text
    window.controller().actions().regularExpression->trigger();
    ASSERT_TRUE(search());
    EXPECT_TRUE(notice->isVisible());
    Q_EMIT notice->linkActivated(u"unicode"_s);
    ASSERT_TRUE(waitFor([&] { return !window.controller().searching(); }));
    EXPECT_TRUE(window.ui().unicodeCheckBox->isChecked());
    EXPECT_FALSE(notice->isVisible());
    const TDMatchLine &line = *window.document.findResults().files().first()->children().first()->matchLine();
    EXPECT_EQ(line.matchRanges().first().location, 2);
}

TEST_F(SearchWindowTest, CtrlCCopiesInAFieldAndTogglesElsewhere)
{
    OpenWindow window(application);
    window.document.setFindText(u"copied"_s);
    window.find()->setFocus();
    window.find()->selectAll();
    QTest::keyClick(window.find(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"copied"_s);
    EXPECT_TRUE(window.ui().ignoreCaseCheckBox->isChecked());
    // Without results there is nothing to copy, and nothing to toggle there.
    window.outline()->setFocus();
    QTest::keyClick(window.outline(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(window.ui().ignoreCaseCheckBox->isChecked());
    window.ui().regularExpressionCheckBox->setFocus();
    QTest::keyClick(window.ui().regularExpressionCheckBox, Qt::Key_C, Qt::ControlModifier);
    EXPECT_FALSE(window.ui().ignoreCaseCheckBox->isChecked());
}

TEST_F(SearchWindowTest, PastedLineBreaksStayInTheTextAndOutOfTheLayout)
{
    OpenWindow window(application);
    const int height = window.ui().findTextComboBox->height();
    QGuiApplication::clipboard()->setText(u"one\ntwo"_s + QString(5000, u'x'));
    window.find()->setFocus();
    window.find()->selectAll();
    window.find()->paste();
    EXPECT_EQ(window.document.findText().left(7), u"one\ntwo"_s);
    EXPECT_EQ(window.document.findText().size(), 5007);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.ui().findTextComboBox->height(), height);
    EXPECT_LE(window.window()->minimumSizeHint().width(), 640);
}

TEST_F(SearchWindowTest, TheDividerKeepsItsDistanceAndTheResultsTakeTheGrowth)
{
    OpenWindow window(application);
    window.window()->resize(800, 700);
    QCoreApplication::processEvents();
    SearchSplitView *split = window.ui().splitView;
    const int top = split->sizes().value(0);
    window.window()->resize(800, 900);
    QCoreApplication::processEvents();
    EXPECT_EQ(split->sizes().value(0), top);
    EXPECT_EQ(split->constrainedPosition(10), 140);
    // With the frame that the window manager puts around it.
    const int limit = window.window()->frameGeometry().height() - 350;
    EXPECT_GT(limit, 900 - 350);
    EXPECT_EQ(split->constrainedPosition(890), limit);
    QSplitterHandle *handle = split->handle(1);
    const QPoint grip = handle->rect().center();
    QTest::mousePress(handle, Qt::LeftButton, {}, grip);
    QTest::mouseMove(handle, grip + QPoint(0, 2000));
    QTest::mouseRelease(handle, Qt::LeftButton, {}, grip);
    EXPECT_EQ(split->sizes().value(0), limit);
}

TEST_F(SearchWindowTest, ClosingDuringASearchClosesAtOnce)
{
    writeFiles(500, QByteArray("needle\n").repeated(50));
    for (int round = 0; round < 10; ++round) {
        auto window = std::make_unique<OpenWindow>(application);
        window->searchIn(folder.path("tree"), u"needle"_s);
        window->controller().startSearch(StartStopButton::On);
        if (round % 2 == 1)
            waitFor([&] { return !window->document.findResults().isEmpty(); });
        EXPECT_TRUE(window->window()->close());
        EXPECT_FALSE(window->controller().searching());
        window.reset();
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(UserDefaults::standard().stringForKey(TD_USER_DEFAULTS_NAME_FIND_TEXT), u"needle"_s);
}

TEST_F(SearchWindowTest, NothingOfASearchReachesAClosedWindow)
{
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, true);
    OpenWindow window(application);
    window.searchIn(folder.path(), u"(unclosed"_s);
    window.controller().startSearch(StartStopButton::On);
    EXPECT_TRUE(window.window()->close());
    // Its thread lets go of it at its end; what it told is on its way then.
    const auto &engine = window.controller().searchControl().searchEngine();
    EXPECT_TRUE(waitFor([&] { return engine.use_count() == 1; }));
    QCoreApplication::processEvents();
    for (const QWidget *widget : QApplication::topLevelWidgets())
        EXPECT_FALSE(widget->isVisible()) << widget->metaObject()->className();
    EXPECT_EQ(window.document.resultsStatusText(), u""_s);
}

TEST_F(SearchWindowTest, TwoWindowsSearchSideBySide)
{
    writeFiles(300, "needle and thread\n");
    OpenWindow one(application);
    OpenWindow two(application);
    one.searchIn(folder.path("tree"), u"needle"_s);
    two.searchIn(folder.path("tree/0"), u"thread"_s);
    one.controller().startSearch(StartStopButton::On);
    two.controller().startSearch(StartStopButton::On);
    ASSERT_TRUE(
        waitFor([&] { return !one.controller().searching() && !two.controller().searching(); }, 60000));
    EXPECT_EQ(one.document.findResults().count(), 300);
    EXPECT_EQ(two.document.findResults().count(), 100);
}

TEST_F(SearchWindowTest, ClosingAsksWhileAnyWindowReplaces)
{
    OpenWindow window(application);
    application.setCountBusyWindows(1);
    EXPECT_FALSE(window.window()->close());
    ASSERT_NE(window.sheet(), nullptr);
    EXPECT_EQ(window.sheet()->text(), u"Do you want to stop the replace that is in progress?"_s);
    EXPECT_EQ(window.sheet()->defaultButton()->text(), u"Continue Replace and Don‘t Close Window"_s);
    QTest::keyClick(window.sheet(), Qt::Key_Escape);
    EXPECT_TRUE(window.window()->isVisible());
    EXPECT_FALSE(window.controller().stopReplace());

    ASSERT_TRUE(waitFor([&] { return window.window()->findChild<QMessageBox *>() == nullptr; }));
    EXPECT_FALSE(window.window()->close());
    window.press(u"Stop Replace and Close Window"_s);
    EXPECT_FALSE(window.window()->isVisible());
    EXPECT_TRUE(window.controller().stopReplace());
}

} // namespace

} // namespace tidemark::test
