#include "support/gui/OpenWindow.h"

#include "foundation/FileSystemCalls.h"
#include "session/ReplaceTexts.h"
#include "window/ErrorSheet.h"
#include "window/results/ResultsTreeModel.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QThread>

namespace tidemark::test {

namespace {

using Contents = QList<QByteArray>;

const Contents CONTENTS = {"foo foo\nx\nfoo\n", "a foo b\r\n", "a foo"};
const Contents REPLACED = {"bar bar\nx\nbar\n", "a bar b\r\n", "a bar"};

class ReplaceCommandsTest : public WindowTest
{
protected:
    ReplaceCommandsTest()
    {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, false);
        ReplaceCommands::setSuppressAlertReplaceSelection(false);
    }
    static void setExpression(bool isExpression)
    {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, isExpression);
    }

    /// Files with these contents, searched and shown.
    void open(const Contents &contents, const QString &findText = u"foo"_s)
    {
        window.reset();
        for (qsizetype number = 0; number < contents.size(); ++number)
            folder.write(nameOf(number), contents[number]);
        window = std::make_unique<OpenWindow>(application);
        window->searchIn(folder.path(), findText);
        window->document.setReplaceText(u"bar"_s);
        window->search();
    }
    static QByteArray nameOf(qsizetype number) { return "file" + QByteArray::number(number); }
    Contents contents() const
    {
        Contents all;
        for (qsizetype number = 0; number < folder.names().size(); ++number)
            all << folder.read(nameOf(number));
        return all;
    }
    ResultsPane &pane() { return window->controller().resultsPane(); }
    ReplaceCommands &commands() { return pane().replaceCommands(); }
    ReplaceControl &control() { return window->controller().replaceControl(); }

    std::unique_ptr<OpenWindow> window;
};

TEST_F(ReplaceCommandsTest, ReplaceChangesTheHighlightedMatchOnly)
{
    open(CONTENTS);
    pane().navigation().moveToNextMatch();
    commands().replace();
    EXPECT_EQ(contents(), Contents({"foo bar\nx\nfoo\n", CONTENTS[1], CONTENTS[2]}));
    const TDMatchLine *line = pane().navigation().currentlySelectedMatchLine();
    EXPECT_EQ(line->lineNumber(), 1);
    EXPECT_EQ(line->highlightedMatchIndex(), 1);
    EXPECT_EQ(application.countBusyWindows(), 0U);
}

TEST_F(ReplaceCommandsTest, ReplaceShowsTheLineFirstWhateverHidIt)
{
    open(CONTENTS);
    TDSearchResultsOutlineView *view = window->outline();
    // By keys the line stays the current one, by the mouse the file becomes it.
    for (const bool byKeys : {true, false}) {
        const QModelIndex file = view->model()->index(0, 0);
        pane().navigation().selectFirstMatch();
        if (byKeys) {
            QTest::keyClick(view, Qt::Key_Left);
            QTest::keyClick(view, Qt::Key_Left);
        } else {
            QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, QPoint(5, 5));
        }
        ASSERT_FALSE(view->isExpanded(file));
        const QByteArray before = folder.read(nameOf(0));
        QTest::keyClick(view, Qt::Key_R, Qt::ControlModifier);
        EXPECT_TRUE(view->isExpanded(file));
        EXPECT_EQ(view->selectedRow(), 1);
        EXPECT_NE(folder.read(nameOf(0)), before);
        window->document.setReplaceText(u"baz"_s);
        window->search();
    }
    // What was scrolled out of sight comes back.
    open({QByteArray("foo\n").repeated(200)});
    view = window->outline();
    view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum());
    commands().replace();
    EXPECT_TRUE(view->viewport()->rect().contains(view->visualRect(view->indexAtRow(1))));
}

TEST_F(ReplaceCommandsTest, AFaultyExpressionIsShownAndChangesNothing)
{
    open(CONTENTS);
    setExpression(true);
    window->document.setFindText(u"(foo"_s);
    commands().replace();
    ASSERT_NE(window->sheet(), nullptr);
    EXPECT_TRUE(window->sheet()->text().contains(u"malformed"_s));
    EXPECT_EQ(contents(), CONTENTS);
}

TEST_F(ReplaceCommandsTest, AFailedReplaceMarksItsRowUntilOneSucceeds)
{
    open(CONTENTS);
    const QModelIndex folderOfFile = window->outline()->model()->index(0, ResultsTreeModel::FolderColumn);
    const QString before = folderOfFile.data().toString();
    setModificationDate(folder.path(nameOf(0)), 1234567890000000000);
    commands().replace();
    ASSERT_NE(window->sheet(), nullptr);
    EXPECT_TRUE(folderOfFile.data().toString().contains(u"has been modified outside"_s));
    window->sheet()->close();
    commands().replace();
    EXPECT_EQ(contents().first(), QByteArray("bar foo\nx\nfoo\n"));
    EXPECT_EQ(folderOfFile.data().toString(), before);
}

TEST_F(ReplaceCommandsTest, ReplaceAndFindHeldDownEqualsReplaceAll)
{
    const std::tuple<QString, QString, bool> cases[] = {
        {u"foo"_s, u"foofoo"_s, false}, {u"foo"_s, QString(), false}, {u"(f)(oo)"_s, u"$2$1f"_s, true}};
    for (const auto &[findText, replaceText, isExpression] : cases) {
        setExpression(isExpression);
        open(CONTENTS, findText);
        window->document.setReplaceText(replaceText);
        for (int press = 0; press < 12; ++press)
            commands().replaceAndFind();
        const Contents walked = contents();
        EXPECT_NE(walked, CONTENTS);
        open(CONTENTS, findText);
        window->replaceAll(replaceText);
        EXPECT_EQ(walked, contents()) << qPrintable(findText);
    }
}

TEST_F(ReplaceCommandsTest, ReplaceAllAsksTellsAndStandsOnTheFirstMatchAfterwards)
{
    open(CONTENTS);
    const QSignalSpy replacing(&control(), &ReplaceControl::replacing);
    const QSignalSpy finished(&control(), &ReplaceControl::finished);
    commands().replaceAll();
    ASSERT_NE(window->sheet(), nullptr);
    EXPECT_EQ(window->sheet()->windowModality(), Qt::WindowModal);
    EXPECT_TRUE(window->sheet()->informativeText().contains(u"5 matches in 3 files will change."_s));
    EXPECT_EQ(window->sheet()->defaultButton()->text(), u"Replace All"_s);
    commands().replaceAll();
    QTest::keyClick(window->sheet(), Qt::Key_Escape);
    EXPECT_EQ(contents(), CONTENTS);

    window->document.setReplaceText({});
    commands().replaceAll();
    EXPECT_TRUE(window->sheet()->informativeText().contains(u"will be deleted"_s));
    window->press(u"Cancel"_s);
    window->replaceAll(u"bar"_s);
    EXPECT_EQ(contents(), REPLACED);
    EXPECT_TRUE(pane().navigation().firstItemSelected());
    commands().replaceAll();
    EXPECT_TRUE(window->sheet()->informativeText().endsWith(
        u"These matches were replaced already, so nothing will change."_s));
    window->press(u"Cancel"_s);
    EXPECT_EQ(replacing.count(), 2);
    EXPECT_EQ(finished.count(), 1);
    EXPECT_EQ(application.countBusyWindows(), 0U);
}

TEST_F(ReplaceCommandsTest, TheSheetNamesBothTextsAndWhatChangedSinceTheSearch)
{
    struct Case
    {
        QString findText;
        QString replaceText;
        bool isExpression;
        bool ignoresCase;
        QString below;
        QString change = u"5 matches in 3 files will change."_s;
    };
    const QString expression = u"‘Regular expression’ was changed since the search."_s;
    const QString wide = QString::fromUcs4(U"\U0001F30A").repeated(40);
    const Case cases[] = {
        {u"foo"_s, u"a\nb"_s, false, false, u"‘foo’\nReplace text: ‘a\u23CEb’"_s},
        {u"<b>"_s, u"%@"_s, false, false,
         u"‘<b>’\nReplace text: ‘%@’\n\nThese results were found with ‘foo’."_s},
        {u"foo"_s, u"$1"_s, true, false, u"‘foo’\nReplace text: ‘$1’\n\n"_s + expression},
        {u"o(?=o\\b)|fox"_s, u"x"_s, true, false,
         u"‘o(?=o\\b)|fox’\nReplace text: ‘x’\n\nThese results were found with ‘foo’. "_s + expression},
        {u"fox"_s, u"x"_s, true, false,
         u"‘fox’\nReplace text: ‘x’\n\nThese results were found with ‘foo’. "_s + expression +
             u" 5 matches will stay as they are."_s,
         u"0 matches in 0 files will change."_s},
        {u"foo"_s, wide, false, true,
         u"‘foo’\nReplace text: ‘%1…%2’\n\n‘Ignore case’ was changed since the search."_s.arg(wide.first(30),
                                                                                              wide.last(28))},
    };
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_IGNORE_CASE, false);
    setExpression(false);
    open(CONTENTS);
    for (const Case &test : cases) {
        window->document.setFindText(test.findText);
        window->document.setReplaceText(test.replaceText);
        setExpression(test.isExpression);
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_IGNORE_CASE, test.ignoresCase);
        commands().replaceAll();
        ASSERT_NE(window->sheet(), nullptr);
        EXPECT_EQ(window->sheet()->informativeText(), u"This operation cannot easily be undone.\n\n"_s +
                                                          test.change + u"\n\nFind text: "_s + test.below);
        window->press(u"Cancel"_s);
        QCoreApplication::processEvents();
    }
    setExpression(true);
    window->search();
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_WHOLE_WORDS, true);
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_UNICODE_REGULAR_EXPRESSION, true);
    window->document.setFindText(u"(?<!foo )foo$"_s);
    commands().replaceAll();
    EXPECT_TRUE(window->sheet()->informativeText().contains(u"2 matches in 2 files will change."_s));
    EXPECT_TRUE(window->sheet()->informativeText().endsWith(
        u"‘Unicode’ was changed since the search. ‘Whole words’ was changed since the search. 3 matches "
        "will stay as they are."_s));
}

TEST_F(ReplaceCommandsTest, TheStatusTellsWhichMatchesStayed)
{
    struct Case
    {
        Contents contents;
        const char *replaceText;
        QString status;
    };
    const Case cases[] = {
        {{"foo foo\n", "foo\n"}, "foo", u"Replaced 0 matches in 0 files • 3 matches stayed as they were"_s},
        {{"foo\n", "FOO\n"}, "foo", u"Replaced 1 match in 1 file • 1 match stayed as it was"_s},
        {{"foo\n", "FOO\n"}, "bar", u"Replaced 2 matches in 2 files"_s},
    };
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_IGNORE_CASE, true);
    setExpression(false);
    for (const Case &test : cases) {
        open(test.contents);
        window->replaceAll(QLatin1String(test.replaceText));
        EXPECT_EQ(window->sheet(), nullptr);
        EXPECT_EQ(window->ui().resultsStatusLabel->text(), test.status);
    }
}

TEST_F(ReplaceCommandsTest, ReplaceSelectionAsksUntilToldNotTo)
{
    open(CONTENTS);
    pane().navigation().showAll();
    window->outline()->selectRow(2);
    window->outline()->selectRow(4, true);
    commands().replaceSelection();
    EXPECT_TRUE(window->sheet()->informativeText().contains(u"2 matches in 2 files will change."_s));
    window->sheet()->checkBox()->setChecked(true);
    window->press(u"Cancel"_s);
    EXPECT_EQ(contents(), CONTENTS);
    QCoreApplication::processEvents();
    commands().replaceSelection();
    EXPECT_EQ(window->sheet(), nullptr);
    EXPECT_EQ(contents(), Contents({"foo foo\nx\nbar\n", "a bar b\r\n", "a foo"}));
}

/// Long enough for events to be delivered while each group of files goes to the disk.
struct SlowDisk : FileSystemCalls
{
    SlowDisk() { setCurrent(this); }
    ~SlowDisk() override { setCurrent(nullptr); }
    int syncFileSystem(int) override { return (QThread::msleep(120), 0); }
};

TEST_F(ReplaceCommandsTest, StopEndsTheRunBetweenFiles)
{
    constexpr int FILE_COUNT = 40;
    open(Contents(FILE_COUNT, "foo\n"));
    const SlowDisk disk;
    QSignalSpy shownAnew(window->outline()->model(), &QAbstractItemModel::dataChanged);
    quint64 shownDone = 0;
    QObject::connect(&control(), &ReplaceControl::progressed, [&](quint64 done, quint64 count) {
        EXPECT_TRUE(done == shownDone || !shownAnew.isEmpty());
        shownAnew.clear();
        shownDone = done;
        EXPECT_EQ(count, quint64(FILE_COUNT));
        EXPECT_TRUE(control().isReplacing());
        if (done > 0)
            control().setStopReplace(true);
        // Nothing else can be done meanwhile.
        commands().replaceAll();
        EXPECT_EQ(window->sheet(), nullptr);
        pane().navigation().removeSelected();
    });
    window->replaceAll(u"bar"_s);
    const Contents now = contents();
    EXPECT_GT(now.count("bar\n"), 0);
    EXPECT_GT(now.count("foo\n"), 0);
    EXPECT_EQ(now.count("bar\n") + now.count("foo\n"), FILE_COUNT);
    EXPECT_EQ(window->document.findResults().count(), FILE_COUNT);
    EXPECT_EQ(application.countBusyWindows(), 0U);
}

TEST_F(ReplaceCommandsTest, ARunKeepsItsLocationsAndLeavesItsOutcomeAndTheKeyboardInTheResults)
{
    const SlowDisk disk;
    for (const bool stops : {true, false}) {
        open(Contents(40, "foo foo\n"));
        const qsizetype locations = window->document.searchLocations().size();
        window->ui().searchLocationsTableView->selectRow(0);
        window->ui().replaceAllButton->setFocus();
        QObject::connect(&control(), &ReplaceControl::progressed, [&](quint64 done) {
            const SearchWindowActions &actions = window->controller().actions();
            EXPECT_FALSE(actions.addLocation->isEnabled() || actions.removeLocation->isEnabled());
            EXPECT_FALSE(window->ui().addLocationButton->isEnabled());
            QTest::keyClick(window->ui().searchLocationsTableView, Qt::Key_Delete);
            window->controller().locations().addSearchLocations({folder.path(nameOf(0)).toUrl()});
            EXPECT_EQ(window->document.searchLocations().size(), locations);
            if (stops && done > 0)
                window->ui().stopReplaceButton->setFocus();
            if (stops && done > 0)
                window->ui().stopReplaceButton->click();
        });
        window->replaceAll(u"bar"_s);
        EXPECT_EQ(window->window()->focusWidget(), window->outline());
        EXPECT_TRUE(window->ui().addLocationButton->isEnabled());
        const qsizetype done = contents().count("bar bar\n");
        EXPECT_EQ(window->ui().resultsStatusLabel->text(),
                  stops ? u"Replacing stopped: %1 of 40 files done"_s.arg(done)
                        : u"Replaced 80 matches in 40 files"_s);
    }
}

TEST_F(ReplaceCommandsTest, TheQuestionGoesWithTheRunAndTheWindowCloses)
{
    open(Contents(40, "foo\n"));
    const SlowDisk disk;
    QObject::connect(&control(), &ReplaceControl::progressed, [&](quint64 done) {
        EXPECT_TRUE(done > 0 || !window->window()->close());
        EXPECT_NE(window->sheet(), nullptr);
    });
    window->replaceAll(u"bar"_s);
    EXPECT_EQ(window->sheet(), nullptr);
    EXPECT_TRUE(waitFor([&] { return !window->window()->isVisible(); }));
    EXPECT_EQ(contents(), Contents(40, "bar\n"));
}

TEST_F(ReplaceCommandsTest, ARunSurvivesThatItsObjectGoesAway)
{
    open(Contents(10, "foo\n"));
    int busyCount = 0;
    auto replace = std::make_unique<ReplaceControl>(
        ReplaceContext{[] { return u"foo"_s; }, [] { return u"bar"_s; },
                       [](const FilePath &) { return false; }, [&] { ++busyCount; }, [&] { --busyCount; }});
    auto own =
        std::make_unique<ReplaceCommands>(*replace, window->controller().searchControl(),
                                          dynamic_cast<ResultsTreeModel &>(*window->outline()->model()),
                                          *window->outline(), pane().navigation());
    // Delivered while the first file is on its way.
    QObject::connect(replace.get(), &ReplaceControl::progressed, [&] {
        QMetaObject::invokeMethod(
            &window->document,
            [&] {
                own.reset();
                replace.reset();
            },
            Qt::QueuedConnection);
    });
    own->replaceAll();
    window->press(u"Replace All"_s);
    ASSERT_TRUE(waitFor([&] { return own == nullptr && busyCount == 0; }));
    // The first file may already have been on its way.
    const Contents now = contents();
    EXPECT_EQ(now, Contents({now.first() == "bar\n" ? "bar\n" : "foo\n"}) + Contents(9, "foo\n"));
}

TEST(ErrorSheet, ShowsFileNamesAsTheyAre)
{
    QWidget window;
    window.show();
    const TDError error =
        TDError::initalizePresentErrorWithCode(30, u"Description"_s, u"<b>not bold</b>"_s, u"Suggestion"_s);
    const QMessageBox *sheet = presentErrorSheet(&window, error);
    EXPECT_TRUE(sheet->text().contains(u"<b>not bold</b>"_s));
    for (const QLabel *label : sheet->findChildren<QLabel *>())
        EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText)
            << qPrintable(label->text());
    EXPECT_EQ(sheet->informativeText(), u"Suggestion"_s);
}

TEST(ErrorSheet, ListsFilesThatFailedTheWorstFirstToBeCopied)
{
    std::vector<TDSelectedMatchReplacement::FileFailure> failures;
    for (int file = 0; file < 1000; ++file)
        failures.push_back({FilePath("/d/" + QByteArray::number(file)), RewriteProblem::Changed, {}, {}});
    failures.push_back({FilePath("/d/<b>a\nb</b>"), RewriteProblem::NotBegun, {}, {}});
    failures.push_back({FilePath("/d/torn"), RewriteProblem::Damaged, {}, FilePath("/d/old")});
    QWidget window;
    window.show();
    const TDError error = TDSelectedMatchReplacement::failedFilesError({FilePath("/d/torn")});
    QMessageBox *sheet = presentErrorSheet(&window, error, failedFilesText(failures));
    auto *list = sheet->findChild<QPlainTextEdit *>();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(sheet->focusWidget(), sheet->button(QMessageBox::Ok));
    EXPECT_TRUE(sheet->rect().contains(list->geometry()));
    EXPECT_GT(sheet->button(QMessageBox::Ok)->mapTo(sheet, QPoint()).y(), list->geometry().bottom());
    EXPECT_LT(sheet->height(), 600);
    EXPECT_GT(list->verticalScrollBar()->maximum(), 900);
    QTest::keyClick(list, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
    const QStringList lines = QGuiApplication::clipboard()->text().split(u'\n');
    EXPECT_EQ(lines.mid(0, 5),
              QStringList({u"Written only in part (1):"_s, u"/d/torn"_s, u"    old content in /d/old"_s,
                           QString(), u"Changed since the search (%1):"_s.arg(QLocale().toString(1000))}));
    EXPECT_EQ(lines.size(), 5 + 1000 + 3);
    EXPECT_EQ(lines.last(), u"/d/<b>a\u23CEb</b>"_s);
}

} // namespace

} // namespace tidemark::test
