#pragma once

#include "app/TDApplicationController.h"
#include "foundation/FilePath.h"
#include "window/TDMyDocumentController.h"
#include "window/WindowedDocument.h"
#include "window/results/ResultsPane.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QApplication>
#include <QElapsedTimer>

#include <functional>

namespace tidemark {

/// Of the calling thread's own work, whatever else runs on the machine.
double threadMilliseconds();

/// How long something took: on the clock, and of it the main thread's own work. In milliseconds.
struct Duration
{
    double wall = 0;
    double own = 0;
};

class Stopwatch
{
public:
    Stopwatch() { _timer.start(); }
    Duration duration() const;

private:
    QElapsedTimer _timer;
    double _ownBefore = threadMilliseconds();
};

/// Knows how long the main thread was busy without a break.
class BenchApplication : public QApplication
{
public:
    using QApplication::QApplication;
    bool notify(QObject *receiver, QEvent *event) override;
    /// Of the events delivered since the last call.
    Duration takeLongestEvent();

private:
    int _depth = 0;
    Duration _longest;
};

/// The real window, with settings that only this process sees, as benchmarks use it.
class BenchWindow
{
public:
    BenchWindow(const FilePath &location, const QString &findText);

    WindowedDocument &document() { return *_document; }
    TDMyDocumentController &controller() { return *_document->myDocumentController(); }
    const SearchWindowActions &actions() { return controller().actions(); }
    ResultsNavigation &navigation() { return controller().resultsPane().navigation(); }
    TDSearchResultsOutlineView &view() { return controller().resultsPane().outlineView(); }

    /// Seconds until all that is found is shown.
    double search();
    /// Starts a search, stops it after so many milliseconds, and returns the milliseconds from the stop to
    /// its end; negative when it ended by itself before.
    double searchAndStop(int afterMilliseconds);
    /// Empties the results and waits until they are gone.
    void clear();
    /// Until the window shows what the action changed.
    Duration step(const std::function<void()> &action);

    /// Until the window and its document are gone; the last thing to do with it.
    Duration close();

    /// Answers the question that stands before the window by the button that does it.
    void confirm();
    /// Quits, and answers the question of a run in progress by stopping it.
    void stopReplaceAndQuit();

    void press(int key, Qt::KeyboardModifiers modifiers = {});
    void click(QPoint position, Qt::KeyboardModifiers modifiers = {});
    void wheel(int notches);

private:
    TDApplicationController _application;
    WindowedDocument *_document;
};

} // namespace tidemark
