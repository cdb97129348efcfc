#pragma once

#include "replace/TDSelectedMatchReplacement.h"

#include <QString>

#include <vector>

namespace tidemark {

/// Every file with its whole path under the reason why it wasn't rewritten as asked, the worst reason first,
/// and below a file where its old content is, if that is in a backup.
QString failedFilesText(const std::vector<TDSelectedMatchReplacement::FileFailure> &failures);

} // namespace tidemark
