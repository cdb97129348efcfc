#pragma once

#include "session/ResultsRemoval.h"
#include "session/SelectedRows.h"

#include <optional>

namespace tidemark {

class ResultsTreeModel;

/// The last of the selected rows in the order of the model, whether its file is expanded or not. With very
/// many selected it doesn't look at all of them.
std::optional<ResultPath> lastSelectedPath(const SelectedRows &selected, const ResultsTreeModel &model);

} // namespace tidemark
