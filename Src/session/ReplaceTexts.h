#pragma once

#include "replace/TDSelectedMatchReplacement.h"
#include "session/SearchTerms.h"

#include <QString>

#include <optional>
#include <vector>

namespace tidemark {

/// Every file with its whole path under the reason why it wasn't rewritten as asked, the worst reason first,
/// and below a file where its old content is, if that is in a backup.
QString failedFilesText(const std::vector<TDSelectedMatchReplacement::FileFailure> &failures);

/// Both texts, each on a line, shortened in the middle where they are long.
QString findAndReplaceTexts(const QString &findText, const QString &replaceText);

/// How the terms that the results were found with differ from those that they would be replaced with.
/// `staying`: matches that would stay as they are, where that is known.
QString staleResultsText(const SearchTerms &searched, const SearchTerms &now,
                         std::optional<quint64> staying = {});

} // namespace tidemark
