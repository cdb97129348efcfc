#include "session/SearchStatusLine.h"

#include "foundation/LocalizedText.h"

#include <atomic>
#include <chrono>

namespace tidemark {

namespace {

constexpr std::chrono::nanoseconds STATUS_INTERVAL = std::chrono::seconds(1);

QString matchesInFiles(quint64 matchCount, quint64 fileMatchCount)
{
    if (matchCount == 1 && fileMatchCount == 1)
        return localizedString("%d match found in %d file");
    if (matchCount < 2 || fileMatchCount != 1)
        return localizedString("%d matches found in %d files");
    return localizedString("%d matches found in %d file");
}

QString countedReplacements(const ReplaceSummary &summary)
{
    const QString matches = summary.replacements == 1 ? localizedString("Replaced %@ match")
                                                      : localizedString("Replaced %@ matches");
    const QString files =
        summary.filesRewritten == 1 ? localizedString(" in %@ file") : localizedString(" in %@ files");
    return formatted(matches, {grouped(summary.replacements)}) +
           formatted(files, {grouped(summary.filesRewritten)});
}

} // namespace

QString replacedStatus(const ReplaceSummary &summary)
{
    QString status = summary.stopped ? formatted(localizedString("Replacing stopped: %@ of %@ files done"),
                                                 {grouped(summary.filesRewritten + summary.filesUnchanged),
                                                  grouped(summary.fileCount)})
                                     : countedReplacements(summary);
    if (summary.unchangedMatches > 0)
        status += localizedString(" • ") + formatted(summary.unchangedMatches == 1
                                                         ? localizedString("%@ match stayed as it was")
                                                         : localizedString("%@ matches stayed as they were"),
                                                     {grouped(summary.unchangedMatches)});
    return status;
}

QString failedFilesStatus(quint64 count)
{
    return formatted(count == 1 ? localizedString("%@ file failed") : localizedString("%@ files failed"),
                     {grouped(count)});
}

QString statusLineTextScanning(quint64 matchCount, quint64 fileMatchCount, quint64 scannedCount)
{
    return matchesInFiles(matchCount, fileMatchCount) + localizedString(" • ") +
           (scannedCount != 1 ? localizedString("%d files searched") : localizedString("%d file searched")) +
           localizedString(" • Searching: %@");
}

QString statusLineTextFinishedScan(quint64 matchCount, quint64 fileMatchCount, quint64 scannedCount,
                                   SearchEnd end)
{
    return (end == SearchEnd::Interrupted ? localizedString("Search interrupted (")
                                          : localizedString("Search completed (")) +
           matchesInFiles(matchCount, fileMatchCount) + localizedString(" • ") +
           (scannedCount != 1 ? localizedString("%d files searched)") : localizedString("%d file searched)"));
}

QString scanningStatus(quint64 matchCount, quint64 fileMatchCount, quint64 scannedCount, const FilePath &path)
{
    return formatted(
        statusLineTextScanning(matchCount, fileMatchCount, scannedCount),
        {grouped(matchCount), grouped(fileMatchCount), grouped(scannedCount), path.displayText()});
}

QString finishedStatus(quint64 matchCount, quint64 fileMatchCount, quint64 scannedCount, SearchEnd end)
{
    return formatted(statusLineTextFinishedScan(matchCount, fileMatchCount, scannedCount, end),
                     {grouped(matchCount), grouped(fileMatchCount), grouped(scannedCount)});
}

QString finishedStatus(const SearchCounts &counts)
{
    return finishedStatus(counts.matches, counts.filesWithMatches, counts.searchedFiles, counts.end);
}

QString readAsStatus(quint64 fileCount, const QString &encoding)
{
    if (fileCount == 0)
        return {};
    return localizedString(" • ") + formatted(fileCount == 1 ? localizedString("%@ file read as %@")
                                                             : localizedString("%@ files read as %@"),
                                              {grouped(fileCount), encoding});
}

QString unreadableFilesStatus(quint64 count)
{
    return formatted(count == 1 ? localizedString("%@ file couldn't be read")
                                : localizedString("%@ files couldn't be read"),
                     {grouped(count)});
}

bool scanningStatusIsDue()
{
    static std::atomic<std::chrono::nanoseconds::rep> lastTime = 0;
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    auto last = lastTime.load(std::memory_order_relaxed);
    if (last != 0 && now - std::chrono::nanoseconds(last) <= STATUS_INTERVAL)
        return false;
    // Of two searches that find it due at once, one wins.
    return lastTime.compare_exchange_strong(last, std::chrono::nanoseconds(now).count(),
                                            std::memory_order_relaxed);
}

} // namespace tidemark
