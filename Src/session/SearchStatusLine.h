#pragma once

#include "foundation/FilePath.h"

#include <QString>

namespace tidemark {

enum class SearchEnd { Completed, Interrupted };

/// Formats of the status line under the results. Their placeholders are the count of matches, of files with
/// matches and of files searched, and while scanning the path last.
QString statusLineTextScanning(quint64 matchCount, quint64 fileMatchCount, quint64 scannedCount);
QString statusLineTextFinishedScan(quint64 matchCount, quint64 fileMatchCount, quint64 scannedCount,
                                   SearchEnd end);

/// The same with everything filled in.
QString scanningStatus(quint64 matchCount, quint64 fileMatchCount, quint64 scannedCount,
                       const FilePath &path);
QString finishedStatus(quint64 matchCount, quint64 fileMatchCount, quint64 scannedCount, SearchEnd end);

/// What a replacement of many matches came to.
struct ReplaceSummary
{
    quint64 replacements = 0;
    quint64 filesRewritten = 0;
    quint64 filesUnchanged = 0; ///< looked at, with nothing to write
    quint64 unchangedMatches = 0;
    quint64 fileCount = 0; ///< files with something to replace
    bool stopped = false;
};
QString replacedStatus(const ReplaceSummary &summary);
QString failedFilesStatus(quint64 count);

/// True at most once a second for the whole process, whichever windows search. From any thread; costs a look
/// at the clock.
bool scanningStatusIsDue();

} // namespace tidemark
