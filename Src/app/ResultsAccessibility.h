#pragma once

namespace tidemark {

/// Tells assistive technologies from now on what the list of results is, which rows it has and which of them
/// is selected, and what stands in the context.
void installResultsAccessibility();

} // namespace tidemark
