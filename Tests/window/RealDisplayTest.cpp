#include "support/gui/OpenWindow.h"
#include "support/gui/VirtualDisplay.h"
#include "window/ShortcutSteps.h"

#include <QDrag>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>

namespace tidemark::test {

namespace {

constexpr char INSIDE[] = "TIDEMARK_TEST_ON_DISPLAY";

class MoveCounter : public QObject
{
public:
    MoveCounter() { qApp->installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override
    {
        const auto *move = event->type() == QEvent::MouseMove ? static_cast<QMouseEvent *>(event) : nullptr;
        count += move != nullptr && receiver->isWidgetType() && move->buttons() == Qt::LeftButton;
        return false;
    }
};

/// Steps at a real X server, where the window manager gives the focus and keys and drags take the whole way.
/// Each test runs itself once more in a process of its own that is shown there.
class RealDisplayTest : public WindowTest
{
protected:
    static void TearDownTestSuite() { _display().reset(); }

    void onRealDisplay(const std::function<void()> &steps)
    {
        if (qEnvironmentVariableIsSet(INSIDE)) {
            steps();
            return;
        }
        if (!VirtualDisplay::isInstalled())
            GTEST_SKIP() << "Xvfb, openbox or xdotool isn't installed.";
        if (!_display())
            _display() = std::make_unique<VirtualDisplay>();
        ASSERT_TRUE(_display()->isStarted());
        _runAgain();
    }

    /// As a person does it, through the X server; returns when the events are sent.
    static void drive(const QStringList &input)
    {
        QProcess hand;
        hand.start(u"xdotool"_s, input);
        ASSERT_TRUE(waitFor([&] { return hand.state() == QProcess::NotRunning; }));
        ASSERT_EQ(hand.exitCode(), 0) << hand.readAllStandardError().constData();
    }
    static QStringList moveTo(QPoint place)
    {
        return {u"mousemove"_s, QString::number(place.x()), QString::number(place.y())};
    }
    static void drag(QPoint from, QPoint to)
    {
        const MoveCounter moves;
        drive(moveTo(from) + QStringList{u"mousedown"_s, u"1"_s} + moveTo(from + QPoint(1, 1)));
        // Views take one move as the beginning and the next as the drag; the X server's are merged.
        ASSERT_TRUE(waitFor([&moves] { return moves.count > 0; }));
        drive(moveTo(from + (to - from) / 2) + moveTo(to) + QStringList{u"mouseup"_s, u"1"_s});
    }
    static void click(const QWidget *widget)
    {
        drive(moveTo(widget->mapToGlobal(widget->rect().center())) + QStringList{u"click"_s, u"1"_s});
    }
    static void press(const QString &keys) { drive({u"key"_s, keys}); }

private:
    static std::unique_ptr<VirtualDisplay> &_display()
    {
        static std::unique_ptr<VirtualDisplay> display;
        return display;
    }

    static void _runAgain()
    {
        const testing::TestInfo *test = testing::UnitTest::GetInstance()->current_test_info();
        QProcessEnvironment environment = _display()->environment();
        environment.insert(QString::fromLatin1(INSIDE), u"1"_s);
        environment.remove(u"GTEST_OUTPUT"_s);
        // The desktop's own libraries leak at their end; leaks of this program show without a display too.
        environment.insert(u"ASAN_OPTIONS"_s, environment.value(u"ASAN_OPTIONS"_s) + u":detect_leaks=0"_s);
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QCoreApplication::applicationFilePath(),
                      {u"--gtest_filter=%1.%2"_s.arg(QLatin1String(test->test_suite_name()),
                                                     QLatin1String(test->name()))});
        const bool ended = waitFor([&] { return process.state() == QProcess::NotRunning; }, 60000);
        EXPECT_TRUE(ended && process.exitCode() == 0) << process.readAll().constData();
    }
};

QPoint middleOfRow(const TDSearchLocationsTableView *table, int row)
{
    const QRect rect = table->visualRect(table->model()->index(row, 0));
    return table->viewport()->mapToGlobal(QPoint(rect.left() + 60, rect.center().y()));
}

QByteArray locationNames(const MyDocument &document)
{
    QByteArrayList names;
    for (const TDSearchLocation &location : document.searchLocations())
        names << location.path().lastPathComponent();
    return names.join(' ');
}

/// Something that a file can be dragged from.
class FileManager : public QLabel
{
public:
    explicit FileManager(const FilePath &path) : _path(path)
    {
        setWindowFlag(Qt::X11BypassWindowManagerHint);
        setGeometry(0, 0, 80, 80);
        show();
    }

protected:
    void mousePressEvent(QMouseEvent * /*event*/) override {}
    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (event->position().toPoint().x() < 60)
            return;
        auto *files = new QMimeData;
        files->setUrls({_path.toUrl()});
        auto *drag = new QDrag(this);
        drag->setMimeData(files);
        drag->exec(Qt::CopyAction);
    }

private:
    const FilePath _path;
};

TEST_F(RealDisplayTest, TypingReturnAndKeysOfTheResultsNeedNoMouse)
{
    onRealDisplay([this] {
        folder.write("a.txt", "tide and tide\ntide\n");
        OpenWindow window(application);
        window.searchIn(folder.path(), {});
        EXPECT_TRUE(window.find()->hasFocus());
        drive({u"type"_s, u"tide"_s});
        press(u"Return"_s);
        ASSERT_TRUE(waitFor([&] { return window.outline()->hasFocus(); }));
        EXPECT_EQ(window.document.findResults().count(), 1);
        press(u"Down"_s);
        const auto &navigation = window.controller().resultsPane().navigation();
        ASSERT_TRUE(waitFor([&] {
            const TDMatchLine *line = navigation.currentlySelectedMatchLine();
            return line != nullptr && line->highlightedMatchIndex() == 1;
        }));
        press(u"ctrl+r"_s);
        ASSERT_TRUE(waitFor([&] { return folder.read("a.txt") == "tide and \ntide\n"; }));
        press(u"F6"_s);
        ASSERT_TRUE(waitFor([&] { return window.find()->hasFocus(); }));
        press(u"ctrl+l"_s);
        ASSERT_TRUE(waitFor([&] { return window.sheet() != nullptr && window.sheet()->isActiveWindow(); }));
        press(u"Escape"_s);
        ASSERT_TRUE(waitFor([&] { return window.sheet() == nullptr; }));
        EXPECT_EQ(folder.read("a.txt"), "tide and \ntide\n");
    });
}

TEST_F(RealDisplayTest, CtrlEnterStartsFromTheLocations)
{
    onRealDisplay([this] {
        folder.write("a.txt", "tide\n");
        OpenWindow window(application);
        window.searchIn(folder.path(), u"tide"_s);
        click(window.ui().searchLocationsTableView->viewport());
        ASSERT_TRUE(waitFor([&] { return window.ui().searchLocationsTableView->hasFocus(); }));
        press(u"ctrl+Return"_s);
        ASSERT_TRUE(waitFor([&] { return window.document.findResults().count() == 1; }));
    });
}

TEST_F(RealDisplayTest, EveryShortcutWorksWithTheDesktopsOwnKeys)
{
    onRealDisplay([this] { expectEveryShortcutEverywhere(application); });
}

TEST_F(RealDisplayTest, LocationsAreReorderedByDragging)
{
    onRealDisplay([this] {
        OpenWindow window(application);
        for (const QByteArray name : {"one", "two", "three"})
            window.controller().locations().addSearchLocations({folder.makeFolder(name).toUrl()});
        const TDSearchLocationsTableView *table = window.ui().searchLocationsTableView;
        const QRect last = table->visualRect(table->model()->index(2, 0));
        drag(middleOfRow(table, 0), middleOfRow(table, 2) + QPoint(0, last.height() / 2 - 2));
        ASSERT_TRUE(waitFor([&] { return locationNames(window.document) == "two three one"; }))
            << locationNames(window.document).constData();
    });
}

TEST_F(RealDisplayTest, AFolderIsDroppedFromElsewhere)
{
    onRealDisplay([this] {
        OpenWindow window(application);
        window.window()->move(200, 100);
        FileManager files(folder.makeFolder("dropped"));
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&files));
        const QWidget *table = window.ui().searchLocationsTableView->viewport();
        ASSERT_TRUE(waitFor([&] { return window.window()->x() >= 200; }));
        drag({40, 40}, table->mapToGlobal(table->rect().center()));
        ASSERT_TRUE(waitFor([&] { return locationNames(window.document) == "dropped"; }));
        EXPECT_TRUE(window.document.searchLocations()[0].includeSubFolders);
    });
}

TEST_F(RealDisplayTest, ReplaceAndFindHeldDownReplacesEverything)
{
    onRealDisplay([this] {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, false);
        for (int file = 0; file < 5; ++file)
            folder.write("file" + QByteArray::number(file), "tide, tide\nno match\ntide\n");
        OpenWindow window(application);
        window.searchIn(folder.path(), u"tide"_s);
        window.document.setReplaceText(u"ebbtide"_s);
        window.search();
        ASSERT_TRUE(waitFor([&] { return window.outline()->hasFocus(); }));
        drive({u"keydown"_s, u"ctrl"_s, u"keydown"_s, u"x"_s});
        const bool ended = waitFor([&] {
            return folder.read("file4").endsWith("ebbtide\n") &&
                   folder.read("file4").startsWith("ebbtide, ebb");
        });
        drive({u"keyup"_s, u"x"_s, u"keyup"_s, u"ctrl"_s});
        EXPECT_TRUE(ended);
        for (const QByteArray &name : folder.names())
            EXPECT_EQ(folder.read(name), "ebbtide, ebbtide\nno match\nebbtide\n") << name.constData();
    });
}

} // namespace

} // namespace tidemark::test
