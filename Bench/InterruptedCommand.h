#pragma once

#include "DriverOptions.h"

namespace tidemark {

/// Prints a line for each file that a run left undecided, its state, path and backup between tabs with their
/// bytes percent-encoded, and does what the options decide. False when not all old contents could be put
/// back.
bool decideInterruptedRewrites(const DriverOptions &options);

} // namespace tidemark
