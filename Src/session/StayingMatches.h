#pragma once

#include "matching/TDFindResultItem.h"
#include "session/SearchTerms.h"

#include <optional>

namespace tidemark {

/// Matches that replacing would leave as they are, since the find text was changed and doesn't fit them.
struct StayingMatches
{
    quint64 matches = 0;
    quint64 files = 0; ///< in which nothing else would change
};

/// Of the match lines among the nodes, without what was replaced before; the lines of a file follow each
/// other. Nothing when that can't be told, or would keep a person waiting. Main thread only.
std::optional<StayingMatches> stayingMatches(const FindResultItems &items, const SearchTerms &terms,
                                             const QString &replaceText);

} // namespace tidemark
