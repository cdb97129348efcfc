#pragma once

#include "foundation/WorkerThreads.h"
#include "replace/InterruptedRewrites.h"

#include <QByteArray>

#include <functional>
#include <memory>

class QWidget;

namespace tidemark {

/// Tells, in a sheet on the window, which files an earlier run of the program left partly written, and asks
/// whether their old content is to be put back, which the worker then does. Where none is, but a run was cut
/// short, it tells how far that came. Where the journal has what the run changed, it offers to undo all of
/// that as well, which `undo` is to begin: it is called after the old content was put back, on the main
/// thread. Returns at once; the records stay locked while the sheet stands. Without anything to tell nothing
/// is shown. Escape leaves the decision to the next start. The worker must outlive the sheet.
void askAboutInterruptedRewrites(QWidget *window, const std::shared_ptr<InterruptedRewrites> &rewrites,
                                 WorkerThreads &worker,
                                 std::function<void(const QByteArray &stepId)> undo = {});

} // namespace tidemark
