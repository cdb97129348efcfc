#pragma once

#include <QString>

#include <functional>

class QObject;
class QWidget;

namespace tidemark {

/// Asks, in a sheet on the window (of the whole application without one), whether the replace in progress is
/// to be stopped. Returns at once; `stop` is called when the user says so, unless `context` is gone by then.
/// While the question stands it isn't asked again.
void askToStopReplace(QWidget *window, const QString &continueTitle, const QString &stopTitle,
                      QObject *context, const std::function<void()> &stop);

} // namespace tidemark
