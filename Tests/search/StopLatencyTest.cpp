#include "foundation/UserDefaults.h"
#include "search/TDSearchEngine.h"
#include "support/TemporaryFolder.h"
#include "support/TimeLimit.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <ctime>
#include <random>
#include <thread>

using namespace tidemark;
using tidemark::test::TemporaryFolder;
using tidemark::test::timeLimit;
using namespace Qt::Literals::StringLiterals;

namespace {

/// Both can be raised to see how it is with files of gigabytes.
qsizetype megabytes()
{
    const int asked = qEnvironmentVariableIntValue("TIDEMARK_STOP_MEGABYTES");
    return asked > 0 ? asked : 16;
}

int stopCount()
{
    const int asked = qEnvironmentVariableIntValue("TIDEMARK_STOP_COUNT");
    return asked > 0 ? asked : 4;
}

struct Stopped : TDSearchEngineDelegate
{
    void didFinishSearch(quint64, quint64, quint64) override { isWhole = true; }
    bool isWhole = false;
};

/// In seconds, of the processor where the time that passes depends on what else the machine does.
struct SearchTimes
{
    double searching = 0;
    double stopping = 0; ///< from the stop to the end
    double workWhileStopping = 0;
};

double processorTime()
{
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

SearchTimes searchTimes(const QString &findText, const TDSearchLocation &location, double stopAfter)
{
    TDSearchEngine engine;
    engine.setDelegate(std::make_shared<Stopped>());
    QElapsedTimer timer;
    double stopped = 0;
    double workBeforeStop = 0;
    timer.start();
    std::thread stopper([&] {
        std::this_thread::sleep_for(std::chrono::duration<double>(stopAfter));
        stopped = double(timer.nsecsElapsed()) / 1e9;
        workBeforeStop = processorTime();
        engine.stopSearch();
    });
    engine.startSearch(findText, {location}, true);
    const double ended = double(timer.nsecsElapsed()) / 1e9;
    const double workBeforeEnd = processorTime();
    stopper.join();
    return {ended, std::max(0.0, ended - stopped), std::max(0.0, workBeforeEnd - workBeforeStop)};
}

/// Pieces of text one after the other, up to the size; written in parts, as it may be larger than memory.
TDSearchLocation largeFile(const TemporaryFolder &folder, const QByteArray &piece)
{
    const FilePath path = folder.path("large");
    QFile file(path.displayText());
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    const QByteArray part = piece.repeated((1 << 20) / piece.size() + 1);
    while (file.size() < megabytes() << 20)
        file.write(part);
    TDSearchLocation location;
    location.setURL(path.toUrl());
    return location;
}

class StopLatency : public testing::Test
{
protected:
    void TearDown() override
    {
        setExpression(false);
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_UNICODE_REGULAR_EXPRESSION, false);
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_WHOLE_WORDS, false);
    }
    static void setExpression(bool isExpression)
    {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, isExpression);
    }
    static void setUnicodeExpression()
    {
        setExpression(true);
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_UNICODE_REGULAR_EXPRESSION, true);
    }

    /// Stops searches at random moments, first of all once they are far too long.
    static void expectQuickStops(const QString &findText, const TDSearchLocation &location, double longest,
                                 qint64 allowed = 50)
    {
        std::mt19937 random(7);
        std::vector<double> times;
        std::vector<double> work;
        const double whole = searchTimes(findText, location, longest).searching;
        for (int round = 0; round < stopCount(); ++round) {
            const double moment = whole * double(random() % 1000) / 1000;
            const SearchTimes stopped = searchTimes(findText, location, moment);
            times.push_back(stopped.stopping * 1e3);
            work.push_back(stopped.workWhileStopping * 1e3);
        }
        std::sort(times.begin(), times.end());
        std::sort(work.begin(), work.end());
        const size_t almostWorst = times.size() * 99 / 100;
        if (qEnvironmentVariableIsSet("TIDEMARK_STOP_MEGABYTES"))
            std::printf(
                "searching %.3f s; stopping, median %.1f ms, 99%% %.1f ms; work median %.1f, 99%% %.1f\n",
                whole, times[times.size() / 2], times[almostWorst], work[work.size() / 2], work[almostWorst]);
        EXPECT_LT(std::min(times[almostWorst], work[almostWorst]), double(timeLimit(allowed)))
            << findText.toStdString();
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(StopLatency, IsShortWithinLargeFilesAndLongLines)
{
    const QByteArrayList pieces = {"a line of a log file, some words long\n",
                                   "no line ends here, only words; ", "прилив и отлив без конца; "};
    for (const QByteArray &piece : pieces) {
        const TDSearchLocation location = largeFile(folder, piece);
        for (const QString &findText :
             {u"nowhere to be found"_s, u"words"_s, u"[b-d]{3}x+"_s, u"o[^x]*(x+|z)"_s}) {
            setExpression(findText.contains(u'['));
            expectQuickStops(findText, location, std::min(2.0, double(megabytes()) / 50));
        }
    }
}

TEST_F(StopLatency, IsShortWithinASlowExpression)
{
    setExpression(true);
    TDSearchLocation location;
    location.setURL(folder.write("slow", QByteArray(20000, 'a') + "b\n").toUrl());
    expectQuickStops(u"(a|aa)+$|((a+)*c)"_s, location, 1);
}

TEST_F(StopLatency, IsShortWithinSlowExpressionsOverCharacters)
{
    setUnicodeExpression();
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_WHOLE_WORDS, true);
    const QByteArray word = "an aa прилив ";
    const QByteArrayList contents = {QByteArray(1 << 20, 'a') + "b\n", word.repeated((1 << 20) / word.size()),
                                     "aaa bb éé x\n" + QByteArray("aab яя y1\n").repeated(1'000'000)};
    for (const QByteArray &content : contents) {
        TDSearchLocation location;
        location.setURL(folder.write("slow", content).toUrl());
        for (const QString &findText : {u"(\\p{L}+\\s?)+$"_s, u"(a|aa)+$"_s, u"(?:\\X+)+!"_s})
            expectQuickStops(findText, location, 0.3, 200);
    }
}
