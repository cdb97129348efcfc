#pragma once

#include "replace/InterruptedRewrites.h"

#include <memory>

class QWidget;

namespace tidemark {

/// Tells, in a sheet on the window, which files an earlier run of the program left partly written, and asks
/// whether their old content is to be put back. Returns at once; the records stay locked while the question
/// stands. Without such files nothing is shown. Escape leaves the decision to the next start.
void askAboutInterruptedRewrites(QWidget *window, std::unique_ptr<InterruptedRewrites> rewrites);

} // namespace tidemark
