#include "BenchWindow.h"
#include "WindowSteps.h"

#include "app/UserLanguage.h"
#include "foundation/FreedMemory.h"
#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "replace/RewriteRecord.h"
#include "replace/UndoJournal.h"
#include "search/TDSearchEngine.h"
#include "window/context/ContextPane.h"
#include "window/context/ContextView.h"

#include <QAction>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <malloc.h>
#include <random>
#include <thread>
#include <vector>

using namespace tidemark;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int FILES = 20000;
constexpr int FILES_PER_FOLDER = 200;
constexpr int LINES_PER_FILE = 50;
constexpr int ROUNDS = 5;
constexpr int STARTS = 11;
constexpr int STOPS = 200;
constexpr int QUITS = 20;
constexpr int LONGEST_RUN_MS = 2000;
const QString FIND_TEXT = u"tide"_s;

qint64 now()
{
    return std::chrono::steady_clock::now().time_since_epoch().count();
}

double percentile(std::vector<double> values, double part)
{
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, size_t(double(values.size()) * part))];
}

void printNumber(const QString &what, double number, int decimals, const QString &unit, double goal = 0)
{
    printRow(what, QString::number(number, 'f', decimals) + unit,
             goal > 0 ? u"≤ "_s + QString::number(goal) + unit : QString(), goal <= 0 || number <= goal);
}

// -- Results in the window

/// A million lines that match.
void makeFiles(const QString &folder)
{
    for (int number = 0; number < FILES; ++number) {
        const QString subfolder = folder + u'/' + QString::number(number / FILES_PER_FOLDER);
        QDir().mkpath(subfolder);
        std::ofstream file((subfolder + u"/file%1.txt"_s.arg(number)).toStdString());
        for (int line = 0; line < LINES_PER_FILE; ++line)
            file << "    some words of line " << line << " with a tide in it, and some more behind\n";
    }
}

/// Keeps what a search finds, as the window does.
class Keeper : public TDSearchEngineDelegate
{
public:
    void didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file) override { files << file; }
    FindResultItems files;
};

/// On a thread of its own, as in the window: what threads allocate costs more.
double secondsWithoutWindow(MyDocument &document, const std::shared_ptr<Keeper> &keeper)
{
    const Stopwatch stopwatch;
    std::thread([&] {
        TDSearchEngine engine;
        engine.setDelegate(keeper);
        engine.startSearch(document.findText(), document.searchLocations(), false);
    }).join();
    return stopwatch.duration().wall / 1000;
}

double heapBytes()
{
    const auto info = mallinfo2();
    return double(info.uordblks + info.hblkhd);
}

struct Extent
{
    double lines = 0;
    double textBytes = 0;
};

Extent extentOf(const FindResultItems &files)
{
    Extent extent;
    for (const auto &file : files) {
        extent.lines += double(file->children().size());
        for (const auto &line : file->children())
            extent.textBytes +=
                double(line->matchLine()->matchLineString().size() * qsizetype(sizeof(char16_t)));
    }
    return extent;
}

/// Returns the heap's bytes of the lines beyond their text.
double compareSearches(BenchWindow &window, BenchApplication &application)
{
    std::vector<double> without, with, ratios;
    Duration longest;
    double bytes = 0;
    for (int round = 0; round <= ROUNDS; ++round) {
        const double before = heapBytes();
        const auto keeper = std::make_shared<Keeper>();
        const double reference = secondsWithoutWindow(window.document(), keeper);
        const Extent extent = extentOf(keeper->files);
        bytes = heapBytes() - before - extent.textBytes;
        if (round == 0)
            printNumber(u"match lines"_s, extent.lines, 0, {});
        keeper->files.clear();
        application.takeLongestEvent();
        const double seconds = window.search();
        const Duration event = application.takeLongestEvent();
        if (round > 0) {
            without.push_back(reference);
            with.push_back(seconds);
            ratios.push_back(seconds / reference);
            if (event.wall > longest.wall)
                longest = event;
        }
        window.clear();
    }
    printNumber(u"search without a window, median"_s, percentile(without, 0.5), 2, u" s"_s);
    printNumber(u"search in the window, median"_s, percentile(with, 0.5), 2, u" s"_s);
    printNumber(u"ratio pair by pair, median"_s, percentile(ratios, 0.5), 2, {}, 1.25);
    printDuration(u"longest event while searching"_s, longest, 50);
    return bytes;
}

void reportMemory(double nodeBytes, double windowBytes)
{
    const double lines = double(FILES) * LINES_PER_FILE;
    printNumber(u"heap per match line beyond its text, search"_s, nodeBytes / lines, 0, u" bytes"_s);
    printNumber(u"heap per match line beyond its text, window"_s, windowBytes / lines, 0, u" bytes"_s);
    printNumber(u"both"_s, (nodeBytes + windowBytes) / lines, 0, u" bytes"_s, 300);
}

// -- Whole processes

/// Runs this program as a child, which prints a moment; its distance to the child's start and end, in
/// milliseconds.
std::pair<double, double> runChild(const QStringList &arguments)
{
    const QTemporaryDir settings;
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_CONFIG_HOME"_s, settings.path());
    environment.insert(u"XDG_STATE_HOME"_s, settings.path());
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const qint64 start = now();
    child.start(QCoreApplication::applicationFilePath(), arguments);
    child.waitForFinished(-1);
    const qint64 end = now();
    const qint64 moment = child.readAllStandardOutput().toLongLong();
    return {double(moment - start) / 1e6, double(end - moment) / 1e6};
}

void printMoment()
{
    std::printf("%lld\n", static_cast<long long>(now()));
    std::fflush(stdout);
}

/// Prints when the first painting is through, and quits.
class FirstPainting : public QObject
{
public:
    using QObject::QObject;
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            qApp->removeEventFilter(this);
            // Queued: painting ends with handing the picture to the display.
            QMetaObject::invokeMethod(
                this,
                [] {
                    printMoment();
                    QCoreApplication::exit();
                },
                Qt::QueuedConnection);
        }
        return QObject::eventFilter(watched, event);
    }
};

/// What the program's main() does.
int startAndQuit()
{
    installUserLanguage();
    UserDefaults::setStandard(UserDefaults::atPath(UserDefaults::userFilePath()));
    TDApplicationController controller;
    FirstPainting painting;
    qApp->installEventFilter(&painting);
    controller.awakeFromNib();
    controller.applicationDidFinishLaunching();
    return QApplication::exec();
}

int quitWithResults(const FilePath &folder, const QString &findText)
{
    BenchWindow window(folder, findText);
    window.search();
    QMetaObject::invokeMethod(
        qApp,
        [] {
            printMoment();
            QCoreApplication::exit();
        },
        Qt::QueuedConnection);
    return QApplication::exec();
}

/// Lets a run of replacements go on for a while, stops it, and quits. What matches goes on matching.
int quitWhileReplacing(const FilePath &folder, const QString &findText, int afterMilliseconds)
{
    const RewriteRecordFolder records(RewriteRecord::userFolder());
    const UndoJournalFolder journal(UndoJournal::userFolder());
    BenchWindow window(folder, findText);
    window.document().setReplaceText(findText + QChar(u'a' + afterMilliseconds % 26));
    window.search();
    QTimer::singleShot(afterMilliseconds, qApp, [&window] {
        printMoment();
        window.stopReplaceAndQuit();
    });
    QTimer::singleShot(0, qApp, [&window] {
        window.actions().replaceAll->trigger();
        window.confirm();
    });
    return QApplication::exec();
}

// -- What can be asked for

int measureStart()
{
    std::vector<double> starts, ends;
    for (int round = 0; round <= STARTS; ++round) {
        const auto [start, end] = runChild({u"--start"_s});
        if (round > 0) {
            starts.push_back(start);
            ends.push_back(end);
        }
    }
    printNumber(u"start to the painted window, median"_s, percentile(starts, 0.5), 0, u" ms"_s, 300);
    printNumber(u"start to the painted window, longest"_s, percentile(starts, 1), 0, u" ms"_s);
    printNumber(u"quitting, median"_s, percentile(ends, 0.5), 0, u" ms"_s);
    return 0;
}

int measureResults(const QString &folder, BenchApplication &application)
{
    if (!QDir(folder).exists())
        makeFiles(folder);
    const FilePath path = FilePath::fromDisplayText(QFileInfo(folder).absoluteFilePath());
    {
        BenchWindow window(path, FIND_TEXT);
        const double nodeBytes = compareSearches(window, application);
        const double before = heapBytes();
        window.search();
        const double textBytes = extentOf(window.document().findResults().files()).textBytes;
        window.navigation().showAll();
        window.step([] {});
        reportMemory(nodeBytes, heapBytes() - before - textBytes - nodeBytes);
        measureSteps(window);
        window.clear();
        window.search();
        printDuration(u"clear the results"_s, window.step([&] { window.document().findResults().clear(); }),
                      1000);
        QThreadPool::globalInstance()->waitForDone();
        window.search();
        printDuration(u"close the window"_s, window.close(), 1000);
    }
    const auto [untilQuit, quitting] = runChild({u"--quit"_s, folder, FIND_TEXT});
    printNumber(u"quit with all results"_s, quitting, 0, u" ms"_s, 1000);
    return 0;
}

int measureStops(const QString &location, const QString &findText)
{
    BenchWindow window(FilePath::fromDisplayText(QFileInfo(location).absoluteFilePath()), findText);
    window.search();
    window.clear();
    const int whole = std::max(1, int(window.search() * 1000));
    window.clear();
    std::mt19937 random(42);
    std::vector<double> latencies;
    while (latencies.size() < STOPS) {
        const double latency = window.searchAndStop(std::uniform_int_distribution(0, whole)(random));
        if (latency >= 0)
            latencies.push_back(latency);
        window.clear();
    }
    printNumber(u"whole search"_s, whole, 0, u" ms"_s);
    printNumber(u"stop to end, median of %1"_s.arg(STOPS), percentile(latencies, 0.5), 1, u" ms"_s);
    printNumber(u"stop to end, 99th percentile"_s, percentile(latencies, 0.99), 1, u" ms"_s, 50);
    printNumber(u"stop to end, longest"_s, percentile(latencies, 1), 1, u" ms"_s);
    return 0;
}

/// Of the last match of a file, which may be large.
int measureContext(const QString &location, const QString &findText, BenchApplication &application)
{
    BenchWindow window(FilePath::fromDisplayText(QFileInfo(location).absoluteFilePath()), findText);
    window.search();
    window.actions().showContext->trigger();
    ContextPane &pane = window.controller().contextPane();
    const auto isShown = [&pane] {
        const qint64 number = pane.view().shownLine();
        return number > 0 && pane.context().line(number) != nullptr;
    };
    const auto wait = [&] {
        while (!isShown())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    };
    wait();
    window.actions().showContext->trigger();
    application.takeLongestEvent();
    window.press(Qt::Key_End);
    QCoreApplication::processEvents();
    const Stopwatch stopwatch;
    window.actions().showContext->trigger();
    QCoreApplication::processEvents();
    wait();
    printNumber(u"line of the match"_s, double(pane.view().shownLine()), 0, {});
    printNumber(u"context until its line is there"_s, stopwatch.duration().wall, 0, u" ms"_s);
    printDuration(u"longest event meanwhile"_s, application.takeLongestEvent(), 50);
    return 0;
}

int measureQuits(const QString &folder, const QString &findText)
{
    std::mt19937 random(42);
    std::vector<double> durations;
    for (int round = 0; round < QUITS; ++round) {
        const int delay = std::uniform_int_distribution(100, LONGEST_RUN_MS)(random);
        durations.push_back(
            runChild({u"--quit-replacing"_s, folder, findText, QString::number(delay)}).second);
    }
    printNumber(u"stop replace and quit, median of %1"_s.arg(QUITS), percentile(durations, 0.5), 0, u" ms"_s);
    printNumber(u"stop replace and quit, longest"_s, percentile(durations, 1), 0, u" ms"_s, 1000);
    return 0;
}

const char *const USAGE = "usage: tidemark-window-bench start\n"
                          "       tidemark-window-bench results FOLDER    (made when it isn't there)\n"
                          "       tidemark-window-bench context FILE TEXT\n"
                          "       tidemark-window-bench stops LOCATION TEXT [--regex]\n"
                          "       tidemark-window-bench quits FOLDER TEXT    (replaces in its files)\n";

} // namespace

/// Measures the real window and prints a table in Markdown.
int main(int argc, char **argv)
{
    joinFreedMemoryAtOnce();
    BenchApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString mode = arguments.value(1);
    if (mode == u"--start")
        return startAndQuit();
    installLocalizedTexts(u"en"_s);
    UserDefaults::setStandard(UserDefaults::inMemory());
    QApplication::setQuitOnLastWindowClosed(false);
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION,
                                       arguments.value(4) == u"--regex");
    if (mode == u"--quit")
        return quitWithResults(FilePath::fromDisplayText(QFileInfo(arguments[2]).absoluteFilePath()),
                               arguments[3]);
    if (mode == u"--quit-replacing")
        return quitWhileReplacing(FilePath::fromDisplayText(QFileInfo(arguments[2]).absoluteFilePath()),
                                  arguments[3], arguments[4].toInt());
    const bool isUsed = (mode == u"start" && argc == 2) || (mode == u"results" && argc == 3) ||
                        (mode == u"context" && argc == 4) || (mode == u"stops" && argc >= 4) ||
                        (mode == u"quits" && argc == 4);
    if (!isUsed) {
        std::fputs(USAGE, stderr);
        return 2;
    }
    printRow(u"window, "_s + QGuiApplication::platformName(), u"measured"_s, u"goal"_s, true);
    std::puts("|---|---|---|");
    if (mode == u"start")
        return measureStart();
    if (mode == u"context")
        return measureContext(arguments[2], arguments[3], application);
    if (mode == u"quits")
        return measureQuits(arguments[2], arguments[3]);
    return mode == u"results" ? measureResults(arguments[2], application)
                              : measureStops(arguments[2], arguments[3]);
}
