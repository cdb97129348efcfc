#pragma once

#include <QString>

#include <functional>

class QObject;
class QWidget;

namespace tidemark {

/// What a person wants that has to wait for the replace in progress.
struct WaitingWish
{
    QString continueTitle;
    QString stopTitle;
    /// Called when the user says that the replace is to be stopped.
    std::function<void()> stop;
    /// Called when the replace has ended by itself while the question stood.
    std::function<void()> goOn;
};

/// Asks, in a sheet on the window (of the whole application without one), whether the replace in progress is
/// to be stopped. Returns at once; nothing is called once `context` is gone. A question that stands already
/// isn't asked again, and that of the application takes the place of those of windows.
void askToStopReplace(QWidget *window, const WaitingWish &wish, QObject *context);

/// No replace is in progress any more: the questions go away, and what was wished for goes on soon.
void replaceHasEnded();

} // namespace tidemark
