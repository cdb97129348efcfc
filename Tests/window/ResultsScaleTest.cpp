#include "support/TimeLimit.h"
#include "window/ResultsFixture.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace tidemark {

using test::fileNode;
using test::ResultsWindow;

namespace {

constexpr int FILES = 20000;
constexpr int LINES = 50;

/// Generous, for slow machines and sanitizers; what people wait for is a fraction of it.
constexpr qint64 LONG_STEP = 4000;
constexpr qint64 SHORT_STEP = 500;

class Timing
{
public:
    explicit Timing(const char *what, qint64 limit) : _what(what), _limit(limit) { _timer.start(); }
    ~Timing()
    {
        const qint64 milliseconds = _timer.elapsed();
        testing::Test::RecordProperty(_what, std::to_string(milliseconds));
        EXPECT_LT(milliseconds, test::timeLimit(_limit)) << _what;
        if (qEnvironmentVariableIsSet("TIDEMARK_SHOW_TIMES"))
            qInfo("%s: %lld ms", _what, static_cast<long long>(milliseconds));
    }

private:
    const char *_what;
    qint64 _limit;
    QElapsedTimer _timer;
};

void settle(ResultsWindow &window)
{
    QCoreApplication::processEvents();
    window.view.viewport()->repaint();
}

TEST(ResultsScale, HoldsAMillionLines)
{
    const QStringList lines(LINES, u"some text with foo in it, and a second foo behind it\n"_s);
    FindResultItems files;
    for (int number = 0; number < FILES; ++number)
        files << fileNode("/t/file" + QByteArray::number(number), lines);
    ResultsWindow window;
    for (int batch = 0; batch < FILES; batch += 1000) {
        const Timing timing("append", SHORT_STEP);
        window.results.append(files.mid(batch, 1000));
        settle(window);
    }
    const auto timed = [&window](const char *what, qint64 limit, auto &&action) {
        const Timing timing(what, limit);
        action();
        settle(window);
    };
    timed("expand all", LONG_STEP, [&] { window.navigation->showAll(); });
    EXPECT_EQ(window.view.numberOfRows(), FILES * (LINES + 1));
    timed("select first", SHORT_STEP, [&] { window.navigation->selectFirstMatch(); });
    for (int step = 0; step < 20; ++step)
        timed("walk", SHORT_STEP, [&] { window.press(Qt::Key_Down); });
    QScrollBar *bar = window.view.verticalScrollBar();
    for (const int part : {2, 1, 7, 3})
        timed("scroll", SHORT_STEP, [&] { bar->setValue(bar->maximum() / part); });
    timed("select all", LONG_STEP, [&] { window.view.selectAll(); });
    EXPECT_TRUE(files.last()->children().last()->matchLine()->selected());
    for (const int part : {2, 1, 7, 3})
        timed("scroll selected", SHORT_STEP, [&] { bar->setValue(bar->maximum() / part); });
    timed("walk from selected", LONG_STEP, [&] { window.press(Qt::Key_Down); });
    EXPECT_EQ(window.navigation->selectedObjects().size(), 1);
    timed("sort", LONG_STEP, [&] { window.model.sort(ResultsTreeModel::NameColumn, Qt::DescendingOrder); });
    timed("select all again", LONG_STEP, [&] { window.view.selectAll(); });
    timed("collapse one", LONG_STEP, [&] { window.view.collapseItem(window.model.index(10000, 0)); });
    timed("collapse all", LONG_STEP, [&] { window.navigation->hideAll(); });
    timed("expand all", LONG_STEP, [&] { window.navigation->showAll(); });
    window.view.selectRow(FILES * (LINES + 1) - 1);
    timed("remove one", LONG_STEP, [&] { window.navigation->removeSelected(); });
    files.clear();
    timed("clear", LONG_STEP, [&] { window.results.clear(); });
}

TEST(ResultsScale, LaysOutAVeryLongRowWithThousandsOfMatches)
{
    ResultsWindow window({fileNode("/t/a", {u"foo "_s.repeated(6200)})});
    const auto timed = [&window](const char *what, auto &&action) {
        const Timing timing(what, SHORT_STEP);
        action();
        settle(window);
    };
    timed("show a long row", [&] { window.navigation->selectFirstMatch(); });
    for (int step = 0; step < 10; ++step)
        timed("step in a long row", [&] { window.press(Qt::Key_Down); });
}

} // namespace

} // namespace tidemark
