#include "support/TimeLimit.h"
#include "support/gui/Heartbeat.h"
#include "support/gui/OpenWindow.h"

#include <QAction>
#include <QElapsedTimer>
#include <QScrollBar>

namespace tidemark::test {

namespace {

constexpr int FILES_SEARCHED = 20000;
constexpr qint64 LONGEST_STALL = 100;
constexpr qint64 LONGEST_STOP = 200;

/// Someone who moves the window, scrolls and types, every few milliseconds.
class Fidgeting
{
public:
    explicit Fidgeting(OpenWindow &window) : _window(window)
    {
        QObject::connect(&_timer, &QTimer::timeout, [this] { _fidget(); });
        _timer.start(15);
    }

private:
    void _fidget()
    {
        ++_count;
        QScrollBar *bar = _window.outline()->verticalScrollBar();
        bar->setValue(bar->maximum() / 100 * (_count % 100));
        if (_count % 2 == 0)
            _window.window()->move(_count % 60, _count % 40);
        QTest::keyClick(_window.ui().replaceTextComboBox->lineEdit(), Qt::Key(Qt::Key_A + _count % 26));
        if (_count % 20 == 0)
            _window.controller().actions().nextMatch->trigger();
    }

    OpenWindow &_window;
    QTimer _timer;
    int _count = 0;
};

class LargeSearchTest : public WindowTest
{
protected:
    FilePath tree() const
    {
        const QByteArray content = QByteArray("a line with an e\nand one without\n").repeated(10);
        for (int file = 0; file < FILES_SEARCHED; ++file)
            folder.write(QByteArray::number(file / 500) + '/' + QByteArray::number(file) + ".txt", content);
        return folder.path();
    }
};

TEST_F(LargeSearchTest, TheWindowStaysAliveWhileItIsUsed)
{
    OpenWindow window(application);
    window.searchIn(tree(), u"e"_s);
    window.ui().replaceTextComboBox->setFocus();
    Heartbeat heart;
    Fidgeting user(window);
    window.controller().startSearch(StartStopButton::On);
    ASSERT_TRUE(waitFor([&] { return !window.controller().searching(); }, 120000));
    // The results of the one before have to go first.
    window.controller().startSearch(StartStopButton::On);
    ASSERT_TRUE(waitFor([&] { return !window.controller().searching(); }, 120000));
    QTest::qWait(100);
    EXPECT_GE(window.document.findResults().count(), FILES_SEARCHED / 2);
    EXPECT_LT(heart.longestStall(), timeLimit(LONGEST_STALL));
}

TEST_F(LargeSearchTest, EscapeEndsItAtOnceAndWhatWasFoundStays)
{
    OpenWindow window(application);
    window.searchIn(tree(), u"e"_s);
    window.controller().startSearch(StartStopButton::On);
    ASSERT_TRUE(waitFor([&] { return !window.document.findResults().isEmpty(); }));
    Heartbeat heart;
    QElapsedTimer sinceStop;
    sinceStop.start();
    QTest::keyClick(window.window(), Qt::Key_Escape);
    EXPECT_FALSE(window.controller().searching());
    ASSERT_TRUE(waitFor([&] { return window.document.resultsStatusText().contains(u'('); }));
    EXPECT_LT(sinceStop.elapsed(), timeLimit(LONGEST_STOP));
    EXPECT_TRUE(window.document.resultsStatusText().startsWith(u"Search interrupted ("_s));
    EXPECT_EQ(window.document.filesWithMatchesCount(), window.document.findResults().count());
    heart.beat();
    EXPECT_LT(heart.longestStall(), timeLimit(LONGEST_STALL));
}

} // namespace

} // namespace tidemark::test
