#pragma once

#include "search/LeftOut.h"

#include <QString>

namespace tidemark {

/// What the status line counts as left out: what couldn't be read has a count of its own.
quint64 countInStatus(const LeftOut &leftOut);
/// What the status line ends with: " • 1,204 left out".
QString leftOutStatus(const LeftOut &leftOut);
/// Why and how many, a reason a line.
QString leftOutDetails(const LeftOut &leftOut);
/// Of what was left out, how much another search could take in.
quint64 wouldBeSearchedOnDemand(const LeftOut &leftOut);
/// For a search that found nothing: "No matches in 12 files. 1,204 files were left out…".
QString nothingFoundText(quint64 searchedFiles, quint64 leftOutFiles);

} // namespace tidemark
