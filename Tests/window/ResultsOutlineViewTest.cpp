#include "window/ResultsFixture.h"
#include "window/Workspace.h"
#include "window/results/ResultsActions.h"
#include "window/results/TDSearchResultsTextFieldCell.h"

#include <QClipboard>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>

namespace tidemark::test {

namespace {

using OutlineViewTest = WindowTest;

TEST_F(OutlineViewTest, KeysDoWhatTheTableSays)
{
    const Qt::KeyboardModifiers control = Qt::ControlModifier;
    const Qt::KeyboardModifiers shift = Qt::ShiftModifier;
    const std::tuple<int, Qt::KeyboardModifiers, QString> cases[] = {
        {Qt::Key_S, control, u"replaceSelection"_s},
        {Qt::Key_X, control, u"replaceAndFind"_s},
        {Qt::Key_R, control, u"replace"_s},
        {Qt::Key_L, control, u"replaceAll"_s},
        {Qt::Key_C, control, u"copyLine"_s},
        {Qt::Key_Return, {}, u"openAtMatch"_s},
        {Qt::Key_Enter, Qt::KeypadModifier, u"openAtMatch"_s},
        {Qt::Key_S, {}, {}},
        {Qt::Key_X, {}, {}},
        {Qt::Key_R, shift, {}},
        {Qt::Key_L, {}, {}},
        {Qt::Key_Delete, {}, u"removeSelected"_s},
        {Qt::Key_Down, {}, u"nextMatch"_s},
        {Qt::Key_Down, shift, u"extendToNextMatch"_s},
        {Qt::Key_Down, control, u"firstMatchInNextFile"_s},
        {Qt::Key_Down, control | shift, u"firstMatchInNextFile"_s},
        {Qt::Key_Up, {}, u"previousMatch"_s},
        {Qt::Key_Up, shift, u"extendToPreviousMatch"_s},
        {Qt::Key_Up, control, u"firstMatchInPreviousFile"_s},
    };
    ResultsWindow window(application, {fileNode("/t/some", {u"foo"_s}), fileNode("/t/rest", {u"foo"_s}),
                                       fileNode("/t/beta", {u"foo"_s})});
    // What the keys trigger only tells its name.
    QStringList told;
    const auto actions = window.window()->findChildren<QAction *>()
                         << window.controller().resultsPane().resultsActions().copyLineAction()
                         << window.controller().resultsPane().resultsActions().openAtMatchAction();
    for (QAction *action : actions) {
        action->disconnect();
        QObject::connect(action, &QAction::triggered, action,
                         [&told, action] { told << action->objectName(); });
    }
    for (const bool isEnabled : {true, false}) {
        for (QAction *action : actions)
            action->setEnabled(isEnabled);
        for (const auto &[key, modifiers, name] : cases) {
            told.clear();
            QKeyEvent event(QEvent::KeyPress, key, modifiers,
                            key < 0x80 ? QString(QChar(key).toLower()) : QString());
            QCoreApplication::sendEvent(&window.view, &event);
            EXPECT_TRUE(event.isAccepted());
            EXPECT_EQ(told.join(u','), isEnabled ? name : QString());
            EXPECT_EQ(window.selection(), QString());
        }
    }
    QTest::keyClick(&window.view, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(window.selection(), u"0 1 2"_s);
    // Other letters find files by name.
    window.view.selectRow(0);
    QTest::keyClick(&window.view, 'b');
    EXPECT_EQ(window.selection(), u"2"_s);
}

TEST_F(OutlineViewTest, ContextMenuSelectsTheRowUnderThePointerFirst)
{
    ResultsWindow window(application, {fileNode("/t/a", {u"foo"_s}), fileNode("/t/b", {u"foo"_s})});
    window.view.disconnect(&window.controller().resultsPane());
    const QSignalSpy menus(&window.view, &TDSearchResultsOutlineView::menuRequested);
    const auto centre = [&window](int row) {
        return window.view.visualRect(window.view.indexAtRow(row)).center();
    };
    window.view.selectAll();
    QTest::mouseClick(window.view.viewport(), Qt::RightButton, {}, centre(1));
    EXPECT_EQ(window.selection(), u"0 1"_s);
    window.view.clearSelectedRows();
    QTest::mouseClick(window.view.viewport(), Qt::RightButton, {}, centre(0));
    EXPECT_EQ(window.selection(), u"0"_s);
    EXPECT_EQ(menus.size(), 2);
    QTest::mouseClick(window.view.viewport(), Qt::RightButton, {},
                      window.view.viewport()->rect().bottomLeft());
    EXPECT_EQ(menus.size(), 2);
}

TEST_F(OutlineViewTest, TheMouseSelectsRangesAndTogglesTriangles)
{
    ResultsWindow window(application, {fileNode("/t/a", {u"foo"_s, u"foo"_s}), fileNode("/t/b", {u"foo"_s})});
    const auto click = [&window](int row, Qt::KeyboardModifiers modifiers) {
        QTest::mouseClick(window.view.viewport(), Qt::LeftButton, modifiers,
                          window.view.visualRect(window.view.indexAtRow(row)).center());
    };
    click(0, {});
    EXPECT_EQ(window.view.numberOfRows(), 4);
    click(1, {});
    click(2, Qt::ShiftModifier);
    EXPECT_EQ(window.selection(), u"0:0 0:1"_s);
    click(1, Qt::ControlModifier);
    EXPECT_EQ(window.selection(), u"0:1"_s);
    QTest::mouseClick(window.view.viewport(), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_EQ(window.view.numberOfRows(), 2);
}

/// How many pixels of the row have the colour.
int pixelsOf(const TDSearchResultsOutlineView &view, int row, const QColor &color)
{
    const QImage image = view.viewport()->grab(view.visualRect(view.indexAtRow(row))).toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == color;
    }
    return count;
}

TEST_F(OutlineViewTest, MatchesHaveTheirBackgrounds)
{
    const QColor match(241, 224, 169);
    const QColor current(255, 147, 32);
    ResultsWindow window(application, {fileNode("/t/a", {u"a foo b foo"_s, u"foo foo foo"_s})});
    window.navigation.selectFirstMatch();
    const int one = pixelsOf(window.view, 1, match);
    EXPECT_GT(one, 50);
    EXPECT_NEAR(pixelsOf(window.view, 1, current), one, one / 2);
    EXPECT_NEAR(pixelsOf(window.view, 2, match), 3 * one, one);
    EXPECT_EQ(pixelsOf(window.view, 2, current), 0);
    EXPECT_EQ(pixelsOf(window.view, 0, match), 0);
}

TEST_F(OutlineViewTest, TheRowsOfTheOnlyFileFollowWhenEverythingHasChanged)
{
    const QColor match(241, 224, 169);
    ResultsWindow window(application, {fileNode("/t/a", {u"foo"_s, u"foo foo"_s})});
    window.view.expandAll();
    EXPECT_GT(pixelsOf(window.view, 2, match), 50);
    for (const auto &line : window.results.files()[0]->children())
        line->matchLine()->setReplacedMatches({true, true});
    window.model.noteAllChanged();
    EXPECT_EQ(pixelsOf(window.view, 2, match), 0);
}

TEST_F(OutlineViewTest, TheKeyboardInTheResultsShows)
{
    ResultsWindow window(application, {fileNode("/t/a", {u"foo"_s, u"foo"_s})});
    window.navigation.selectFirstMatch();
    window.view.selectRow(2, true);
    const QColor highlight = window.view.palette().color(QPalette::Active, QPalette::Highlight);
    const auto picture = [&window] { return window.view.viewport()->grab().toImage(); };
    const QImage focused = picture();
    // Of two selected rows one is the current one, with a frame.
    EXPECT_EQ(pixelsOf(window.view, 1, highlight), 0);
    EXPECT_GT(pixelsOf(window.view, 2, highlight), window.view.viewport()->width());
    window.find()->setFocus();
    EXPECT_EQ(pixelsOf(window.view, 2, highlight), 0);
    EXPECT_NE(picture(), focused);
    // Also where there is nothing to stand on.
    window.results.clear();
    const QImage empty = picture();
    window.view.setFocus();
    EXPECT_NE(picture(), empty);
}

TEST_F(OutlineViewTest, NumbersStayAtTheLeftOfEveryLine)
{
    const QString hebrew(u"\u05E9\u05DC\u05D5\u05DD foo (\u05E2\u05D5\u05DC\u05DD)"_s);
    ResultsWindow window(application, {fileNode("/t/a", {u"foo"_s, hebrew})});
    window.navigation.selectFirstMatch();
    QStyleOptionViewItem option;
    option.font = window.view.font();
    option.rect = QRect(0, 0, 500, 20);
    const TDSearchResultsTextFieldCell cell;
    const auto place = [&](int row, qsizetype position, qsizetype length) {
        return cell.rectOfText(option, *window.view.itemAtRow(row), {position, length});
    };
    EXPECT_LT(cell.gutterRect(option).right(), place(1, 0, 3).left());
    // The line runs from right to left by itself: the first word is at the right of the match.
    EXPECT_GT(place(2, 0, 4).left(), place(2, 5, 3).right());
    EXPECT_GT(place(2, 9, 6).left(), cell.gutterRect(option).right());
    EXPECT_NEAR(place(2, 5, 3).width(), place(1, 0, 3).width(), 1);
    EXPECT_GT(pixelsOf(window.view, 2, QColor(241, 224, 169)), 50);
}

TEST_F(OutlineViewTest, RowsWrapByCharacterAndStayReachable)
{
    const QString longLine = QString(24000, u'x') + u"foo\n"_s;
    ResultsWindow window(application,
                         {fileNode("/t/a", {longLine, u"foo\n"_s}), fileNode("/t/b", {u"foo"_s})});
    window.navigation.selectFirstMatch();
    const QRect tall = window.view.visualRect(window.view.indexAtRow(1));
    EXPECT_GT(tall.height(), 20 * window.view.viewport()->height() / 4);
    // The match stands at the end of a row that is higher than the view.
    EXPECT_LT(tall.top(), 0);
    EXPECT_LE(tall.bottom(), window.view.viewport()->height() + 1);
    window.view.verticalScrollBar()->setValue(0);
    EXPECT_EQ(window.view.visualRect(window.view.indexAtRow(0)).top(), 0);
    window.view.verticalScrollBar()->setValue(window.view.verticalScrollBar()->maximum());
    EXPECT_EQ(window.view.visualRect(window.view.indexAtRow(3)).bottom() + 1,
              window.view.viewport()->height());
    window.pressKey(Qt::Key_Down);
    EXPECT_LE(window.view.visualRect(window.view.indexAtRow(2)).bottom(), window.view.viewport()->height());
    // What isn't selected is an excerpt, a click shows all of it.
    EXPECT_LT(window.view.visualRect(window.view.indexAtRow(1)).height(),
              window.view.viewport()->height() / 2);
    window.view.scrollRowToVisible(1);
    QTest::mouseClick(window.view.viewport(), Qt::LeftButton, {},
                      window.view.visualRect(window.view.indexAtRow(1)).center());
    EXPECT_GE(window.view.visualRect(window.view.indexAtRow(1)).height(), tall.height());
    window.window()->resize(1200, 400);
    EXPECT_LT(window.view.visualRect(window.view.indexAtRow(1)).height(), tall.height());
}

TEST_F(OutlineViewTest, TheCurrentRowStaysInSightWhateverChangesAroundIt)
{
    FindResultItems files;
    for (int number = 0; number < 30; ++number)
        files << fileNode("/t/" + QByteArray::number(number), QStringList(10, u"foo"_s));
    ResultsWindow window(application, files);
    window.navigation.hideAll();
    const auto isInSight = [&window] {
        return window.view.viewport()->rect().contains(
            window.view.visualRect(window.view.indexAtRow(window.view.selectedRow())));
    };
    window.pressKey(Qt::Key_End);
    window.navigation.showAll();
    EXPECT_EQ(window.selection(), u"29"_s);
    EXPECT_TRUE(isInSight());
    window.controller().actions().largerText->trigger();
    QCoreApplication::processEvents();
    EXPECT_TRUE(isInSight());
    window.view.verticalScrollBar()->setValue(0);
    window.view.selectRow(5);
    window.window()->resize(700, 300);
    QCoreApplication::processEvents();
    EXPECT_TRUE(isInSight());
    for (int step = 0; step < 8; ++step)
        window.controller().actions().largerText->trigger();
    QCoreApplication::processEvents();
    EXPECT_TRUE(isInSight());
}

TEST_F(OutlineViewTest, TheTextSizeOfTheSettingsIsThatOfTheLines)
{
    ResultsWindow window(application, {fileNode("/t/a", {u"foo\tbar"_s})});
    window.navigation.selectFirstMatch();
    const auto height = [&window](int row) {
        return window.view.visualRect(window.view.indexAtRow(row)).height();
    };
    const SearchWindowActions &actions = window.controller().actions();
    const int before = height(1);
    EXPECT_FALSE(actions.standardTextSize->isEnabled());
    for (int step = 0; step < 100; ++step)
        actions.largerText->trigger();
    EXPECT_FALSE(actions.largerText->isEnabled());
    EXPECT_GT(height(1), 3 * before);
    const int ofFile = height(0);
    actions.standardTextSize->trigger();
    EXPECT_EQ(height(1), before);
    EXPECT_EQ(height(0), ofFile);
}

TEST_F(OutlineViewTest, RowsStayWhereTheyAreWhileResultsArrive)
{
    FindResultItems files;
    for (int number = 0; number < 100; ++number)
        files << fileNode("/t/" + QByteArray::number(number), {u"foo"_s});
    ResultsWindow window(application, files);
    window.view.expandItem(window.model.index(60, 0));
    window.view.selectRow(61);
    window.view.scrollTo(window.view.indexAtRow(61), QAbstractItemView::PositionAtTop);
    window.results.append({fileNode("/t/new", {u"foo"_s})});
    window.view.expandItem(window.model.index(3, 0));
    for (const int grown : {3, 5, 60}) {
        const auto child = fileNode("", {u"foo"_s})->children()[0];
        child->setParent(files[grown].get());
        window.results.add({files[grown], FoundPart::Kind::More, {child}, FileMatches()});
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(window.selection(), u"60:0"_s);
    EXPECT_EQ(window.view.visualRect(window.view.selectedIndex()).top(), 0);
    window.view.header()->setSortIndicator(0, Qt::DescendingOrder);
    EXPECT_EQ(window.model.index(0, 0).data().toString(), u"new"_s);
    EXPECT_EQ(window.view.numberOfRows(), 105);
    EXPECT_EQ(window.navigation.selection().selectedObjects(), FindResultItems({files[60]->children()[0]}));
}

class RecordingWorkspace : public Workspace
{
public:
    std::optional<QString> open(const FilePath &file) override
    {
        told << "open " + file.bytes();
        return problem;
    }
    std::optional<QString> openAt(const EditorPlace &place) override
    {
        told << "open " + place.path.bytes() + " at " + QByteArray::number(place.line) + ':' +
                    QByteArray::number(place.column);
        return problem;
    }
    std::optional<QString> reveal(const FilePath &file) override
    {
        told << "reveal " + file.bytes();
        return problem;
    }
    QList<QByteArray> told;
    std::optional<QString> problem;
};

TEST_F(OutlineViewTest, ActionsActOnTheSelectedFileWhateverItsName)
{
    const QByteArray path("/t/caf\xE9 %41");
    ResultsWindow window(application, {fileNode(path, {u"a\tfoo\r\n"_s})});
    const auto workspace = std::make_shared<RecordingWorkspace>();
    ResultsActions actions(window.navigation, workspace);
    actions.openInFinder();
    EXPECT_FALSE(actions.openAction()->isEnabled());
    window.view.selectRow(0);
    EXPECT_FALSE(actions.copyLineAction()->isEnabled());
    actions.openAction()->trigger();
    window.navigation.selectFirstMatch();
    actions.revealAction()->trigger();
    actions.openAtMatchAction()->trigger();
    EXPECT_EQ(workspace->told,
              QList<QByteArray>({"open " + path, "reveal " + path, "open " + path + " at 1:3"}));
    const QSignalSpy failed(&actions, &ResultsActions::failed);
    workspace->problem = u"no program"_s;
    for (QAction *action : {actions.openAction(), actions.revealAction(), actions.openAtMatchAction()})
        action->trigger();
    EXPECT_EQ(failed.count(), 3);
    actions.copyLineAction()->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"a\tfoo"_s);
    actions.copyAs(ResultsFormat::Text);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"/t/caf\uFFFD %41:1:3:a\tfoo\n"_s);
}

TEST_F(OutlineViewTest, ResultsAreExportedWholeOrNotAtAll)
{
    const FilePath target = folder.write("out.csv", "before");
    ResultsWindow window(application, {fileNode("/t/b", {u"foo"_s}), fileNode("/t/a", {u"foo foo"_s})});
    window.view.header()->setSortIndicator(0, Qt::AscendingOrder);
    ExportPanel &panel = window.controller().resultsPane().exportPanel();
    EXPECT_TRUE(panel.exportTo(target.displayText()));
    EXPECT_EQ(folder.read("out.csv").count("\r\n/t/a,1,"), 2);
    EXPECT_TRUE(folder.read("out.csv").contains("\r\n/t/b,1,1,0,3,foo,foo,"));
    EXPECT_FALSE(panel.exportTo(folder.path("gone/out.csv").displayText()));
    EXPECT_TRUE(window.sheet()->text().contains(u"gone/out.csv"_s));
}

} // namespace

} // namespace tidemark::test
