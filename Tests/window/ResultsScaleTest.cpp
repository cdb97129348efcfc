#include "support/TimeLimit.h"
#include "window/ResultsFixture.h"

#include <QElapsedTimer>
#include <QScrollBar>

namespace tidemark::test {

namespace {

constexpr int FILES = 20000;
constexpr int LINES = 50;

/// Generous, for slow machines and sanitizers; what people wait for is a fraction of it.
constexpr qint64 LONG_STEP = 4000;
constexpr qint64 SHORT_STEP = 500;

class ResultsScaleTest : public WindowTest
{
protected:
    /// The action with everything that has to be drawn afterwards.
    void timed(const char *what, qint64 limit, const std::function<void()> &action)
    {
        QElapsedTimer timer;
        timer.start();
        action();
        QCoreApplication::processEvents();
        window.view.viewport()->repaint();
        EXPECT_LT(timer.elapsed(), timeLimit(limit)) << what;
    }

    ResultsWindow window{application};
};

TEST_F(ResultsScaleTest, HoldsAMillionLines)
{
    const QStringList lines(LINES, u"some text with foo in it, and a second foo behind it\n"_s);
    FindResultItems files;
    for (int number = 0; number < FILES; ++number)
        files << fileNode("/t/file" + QByteArray::number(number), lines);
    for (int batch = 0; batch < FILES; batch += 1000)
        timed("append", SHORT_STEP, [&] { window.results.append(files.mid(batch, 1000)); });
    timed("expand all", LONG_STEP, [&] { window.navigation.showAll(); });
    EXPECT_EQ(window.view.numberOfRows(), FILES * (LINES + 1));
    timed("select first", SHORT_STEP, [&] { window.navigation.selectFirstMatch(); });
    for (int step = 0; step < 20; ++step)
        timed("walk", SHORT_STEP, [&] { window.pressKey(Qt::Key_Down); });
    QScrollBar *bar = window.view.verticalScrollBar();
    for (const bool selects : {false, true}) {
        if (selects)
            timed("select all", LONG_STEP, [&] { window.view.selectAll(); });
        for (const int part : {2, 1, 7, 3})
            timed("scroll", SHORT_STEP, [&] { bar->setValue(bar->maximum() / part); });
    }
    EXPECT_TRUE(window.view.selectedRows().contains(*files.last()->children().last()));
    timed("walk from selected", LONG_STEP, [&] { window.pressKey(Qt::Key_Down); });
    EXPECT_EQ(window.navigation.selection().selectedObjects().size(), 1);
    timed("sort", LONG_STEP, [&] { window.model.sort(ResultsTreeModel::NameColumn, Qt::DescendingOrder); });
    timed("select all again", LONG_STEP, [&] { window.view.selectAll(); });
    timed("collapse one", LONG_STEP, [&] { window.view.collapseItem(window.model.index(10000, 0)); });
    timed("collapse all", LONG_STEP, [&] { window.navigation.hideAll(); });
    timed("expand all", LONG_STEP, [&] { window.navigation.showAll(); });
    window.view.selectRow(FILES * (LINES + 1) - 1);
    timed("remove one", LONG_STEP, [&] { window.navigation.removeSelected(); });
    files.clear();
    timed("clear", LONG_STEP, [&] { window.results.clear(); });
}

TEST_F(ResultsScaleTest, LaysOutAVeryLongRowWithThousandsOfMatches)
{
    window.results.append({fileNode("/t/a", {u"foo "_s.repeated(6200)})});
    timed("show a long row", SHORT_STEP, [&] { window.navigation.selectFirstMatch(); });
    for (int step = 0; step < 10; ++step)
        timed("step in a long row", SHORT_STEP, [&] { window.pressKey(Qt::Key_Down); });
}

} // namespace

} // namespace tidemark::test
