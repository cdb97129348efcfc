#include "support/TimeLimit.h"
#include "support/gui/Heartbeat.h"
#include "support/gui/OpenWindow.h"

#include <QAction>
#include <QScrollBar>
#include <QThreadPool>

#include <fstream>
#include <malloc.h>

using namespace Qt::Literals::StringLiterals;

namespace tidemark::test {

namespace {

constexpr qint64 LONGEST_STALL_IN_LONG_RUN = 100;
constexpr qint64 MEMORY_MARGIN = 8 << 20;

/// With TIDEMARK_LONG_RUNS set everything is so many times as long.
int timesLonger(int times)
{
    return qEnvironmentVariableIsSet("TIDEMARK_LONG_RUNS") ? times : 1;
}

class LongRuns : public WindowTest
{
protected:
    /// Does it, lets everything that follows from it happen, and says how long it took and for how long the
    /// window stood still.
    template <typename Action>
    void timed(const char *what, qint64 longestStall, Action action)
    {
        Heartbeat heart;
        QElapsedTimer duration;
        duration.start();
        action();
        heart.beat();
        waitFor([] { return false; }, 30);
        heart.beat();
        std::printf("%s: %lld ms, longest stall %lld ms\n", what, static_cast<long long>(duration.elapsed()),
                    static_cast<long long>(heart.longestStall()));
        EXPECT_LT(heart.longestStall(), timeLimit(longestStall)) << what;
    }

    /// Searches, walks, scrolls and replaces everything in one file that holds the line so many times.
    void useInWindow(const QByteArray &line, int count)
    {
        const QByteArray content = line.repeated(count);
        folder.write("file.txt", content);
        OpenWindow window(application);
        window.searchIn(folder.path(), u"needle"_s);
        timed("search", LONGEST_STALL_IN_LONG_RUN, [&] { window.search(); });
        const quint64 matches = quint64(content.count("needle"));
        ASSERT_EQ(window.document.findResults().files().first()->matchCount(), matches);
        timed("expand", LONGEST_STALL_IN_LONG_RUN,
              [&] { window.controller().resultsPane().navigation().showAll(); });
        QScrollBar *bar = window.outline()->verticalScrollBar();
        for (const int part : {2, 1, 7, 3})
            timed("scroll", LONGEST_STALL_IN_LONG_RUN, [&] { bar->setValue(bar->maximum() / part); });
        for (int step = 0; step < 5; ++step)
            timed("walk", LONGEST_STALL_IN_LONG_RUN,
                  [&] { window.controller().actions().nextMatch->trigger(); });
        timed("walk to the last match", LONGEST_STALL_IN_LONG_RUN,
              [&] { window.controller().actions().previousMatch->trigger(); });
        timed("replace all", 60000, [&] { window.replaceAll(u"nail"_s); });
        EXPECT_EQ(folder.read("file.txt"), QByteArray(content).replace("needle", "nail"));
        // The C library puts the memory of millions of replaced lines together again in one go.
        timed("search again", 5 * LONGEST_STALL_IN_LONG_RUN, [&] { window.search(); });
    }
};

TEST_F(LongRuns, ManyMatchesInFewLines)
{
    useInWindow(QByteArray("a needle ").repeated(2000) + '\n', timesLonger(20) * 50);
}

TEST_F(LongRuns, ManyLinesInOneFile)
{
    useInWindow("a needle in a line\n", timesLonger(20) * 100000);
}

TEST_F(LongRuns, OneLineWithoutEnd)
{
    const int count = timesLonger(20) * 100000;
    folder.write("file.txt", QByteArray("needle in text that has no line end whatsoever, ").repeated(count));
    OpenWindow window(application);
    window.searchIn(folder.path(), u"needle"_s);
    for (const bool isExpression : {false, true}) {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, isExpression);
        timed("search", LONGEST_STALL_IN_LONG_RUN, [&] { window.search(); });
        ASSERT_EQ(window.document.findResults().count(), 1);
        EXPECT_TRUE(window.document.findResults().files().first()->children().first()->error().hasCode(1));
    }
}

qint64 bytesInUse()
{
    QThreadPool::globalInstance()->waitForDone();
    malloc_trim(0);
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.uordblks + info.hblkhd);
}

TEST_F(LongRuns, MemoryReturnsToWhereItWas)
{
    if (IS_SANITIZED)
        GTEST_SKIP() << "Sanitizers keep what is freed.";
    for (int file = 0; file < 200; ++file)
        folder.write(QByteArray::number(file) + ".txt", QByteArray("a needle in a line\n").repeated(50));
    OpenWindow window(application);
    window.searchIn(folder.path(), {});
    qint64 before = 0;
    const int rounds = timesLonger(40) * 50;
    for (int round = 0; round < rounds; ++round) {
        if (round == 10)
            before = bytesInUse();
        window.document.setFindText(round % 2 == 0 ? u"needle"_s : u"line"_s);
        window.search();
        ASSERT_EQ(window.document.findResults().count(), 200);
    }
    const qint64 after = bytesInUse();
    std::printf("%d searches: %lld KB in use before, %lld KB after\n", rounds,
                static_cast<long long>(before / 1024), static_cast<long long>(after / 1024));
    EXPECT_LT(after, before + MEMORY_MARGIN);
}

} // namespace

} // namespace tidemark::test
