#include "BenchWindow.h"

#include "foundation/UserDefaults.h"

#include <QAbstractButton>
#include <QAction>
#include <QEventLoop>
#include <QKeyEvent>
#include <QMessageBox>
#include <QMouseEvent>
#include <QThreadPool>
#include <QTimer>
#include <QWheelEvent>

#include <ctime>
#include <optional>
#include <utility>

namespace tidemark {

namespace {

constexpr int WHEEL_NOTCH = 120;

} // namespace

double threadMilliseconds()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

Duration Stopwatch::duration() const
{
    return {double(_timer.nsecsElapsed()) / 1e6, threadMilliseconds() - _ownBefore};
}

bool BenchApplication::notify(QObject *receiver, QEvent *event)
{
    const Stopwatch stopwatch;
    ++_depth;
    const bool accepted = QApplication::notify(receiver, event);
    const Duration duration = stopwatch.duration();
    if (--_depth == 0 && duration.wall > _longest.wall)
        _longest = duration;
    return accepted;
}

Duration BenchApplication::takeLongestEvent()
{
    return std::exchange(_longest, {});
}

BenchWindow::BenchWindow(const FilePath &location, const QString &findText)
{
    _application.awakeFromNib();
    _application.setKinds({{QStringLiteral("all"), QStringLiteral("uti:public.item"), true}});
    _application.applicationDidFinishLaunching();
    _document = _application.documents().value(0);
    _document->setFindText(findText);
    controller().locations().addSearchLocations({location.toUrl()});
    controller().window()->activateWindow();
    step([] {});
}

double BenchWindow::search()
{
    QEventLoop loop;
    QObject::connect(&controller().searchControl(), &SearchControl::searchFinished, &loop, &QEventLoop::quit);
    const Stopwatch stopwatch;
    controller().startSearch(StartStopButton::On);
    loop.exec();
    return stopwatch.duration().wall / 1000;
}

double BenchWindow::searchAndStop(int afterMilliseconds)
{
    std::optional<Stopwatch> sinceStop;
    QTimer stop;
    stop.setTimerType(Qt::PreciseTimer);
    stop.setSingleShot(true);
    QObject::connect(&stop, &QTimer::timeout, [this, &sinceStop] {
        sinceStop.emplace();
        actions().stop->trigger();
    });
    stop.start(afterMilliseconds);
    search();
    return sinceStop ? sinceStop->duration().wall : -1;
}

void BenchWindow::clear()
{
    _document->findResults().clear();
    QThreadPool::globalInstance()->waitForDone();
}

Duration BenchWindow::step(const std::function<void()> &action)
{
    const Stopwatch stopwatch;
    action();
    QCoreApplication::processEvents();
    view().viewport()->repaint();
    return stopwatch.duration();
}

Duration BenchWindow::close()
{
    const Stopwatch stopwatch;
    controller().window()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return stopwatch.duration();
}

void BenchWindow::confirm()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *question = qobject_cast<QMessageBox *>(widget);
        if (question == nullptr || !question->isVisible())
            continue;
        const QList<QAbstractButton *> buttons = question->buttons();
        for (QAbstractButton *button : buttons) {
            if (question->buttonRole(button) != QMessageBox::RejectRole)
                return button->click();
        }
    }
}

void BenchWindow::stopReplaceAndQuit()
{
    _application.terminate();
    confirm();
}

void BenchWindow::press(int key, Qt::KeyboardModifiers modifiers)
{
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QCoreApplication::sendEvent(&view(), &event);
}

void BenchWindow::click(QPoint position, Qt::KeyboardModifiers modifiers)
{
    QWidget *viewport = view().viewport();
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, position, viewport->mapToGlobal(position), Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, modifiers);
        QCoreApplication::sendEvent(viewport, &event);
    }
}

void BenchWindow::wheel(int notches)
{
    QWidget *viewport = view().viewport();
    const QPoint center = viewport->rect().center();
    QWheelEvent event(center, viewport->mapToGlobal(center), {}, {0, -notches * WHEEL_NOTCH}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(viewport, &event);
}

} // namespace tidemark
