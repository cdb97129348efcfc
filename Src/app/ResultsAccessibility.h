#pragma once

namespace tidemark {

/// Tells assistive technologies from now on what the list of results is, and which row is selected in it.
void installResultsAccessibility();

} // namespace tidemark
