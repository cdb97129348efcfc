#pragma once

#include "replace/LinesByFile.h"
#include "session/SearchTerms.h"

#include <optional>

namespace tidemark {

/// Matches that replacing would leave as they are, since the find text was changed and doesn't fit them.
struct StayingMatches
{
    quint64 matches = 0;
    quint64 files = 0; ///< in which nothing else would change
};

/// Without what was replaced before. Nothing when that can't be told, or would keep a person waiting. Main
/// thread only.
std::optional<StayingMatches> stayingMatches(const LinesByFile &lines, const SearchTerms &terms,
                                             const QString &replaceText);

} // namespace tidemark
