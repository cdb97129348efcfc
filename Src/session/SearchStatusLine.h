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

/// What a search has come to.
struct SearchCounts
{
    quint64 matches = 0;
    quint64 filesWithMatches = 0;
    quint64 searchedFiles = 0;
    SearchEnd end = SearchEnd::Completed;
};

/// The same with everything filled in.
QString scanningStatus(quint64 matchCount, quint64 fileMatchCount, quint64 scannedCount,
                       const FilePath &path);
QString finishedStatus(quint64 matchCount, quint64 fileMatchCount, quint64 scannedCount, SearchEnd end);
QString finishedStatus(const SearchCounts &counts);
/// What follows when files were read once more in an encoding, whose name is given; empty for none.
QString readAsStatus(quint64 fileCount, const QString &encoding);
QString unreadableFilesStatus(quint64 count);

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
