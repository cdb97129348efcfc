#pragma once

#include "foundation/FilePath.h"
#include "session/FindResults.h"
#include "session/SearchTerms.h"

#include <QHash>
#include <QSet>

#include <functional>
#include <optional>

namespace tidemark {

/// The listed files with what is in them now: those whose content has changed by the program's own doing are
/// searched again, as they were searched before, and the others are as they are. Where a file reads again as
/// it was listed once, it is listed so, with what was replaced in it. Lines that were replaced otherwise and
/// still read so stay. A file with nothing to list goes, and comes back when it has a match again. Main
/// thread only.
class ListedFiles
{
public:
    /// Another search lists something else from now on.
    void clear();

    /// `changed` are paths without links in them. Searches on other threads and delivers events meanwhile, so
    /// nobody may change the results until then. What a stop leaves unsearched is marked. Nothing when none
    /// of the files has changed, and when `shouldStop` says so before anything has begun.
    std::optional<FindResultItems> searchedAgain(FindResultItems files, const QSet<FilePath> &changed,
                                                 const SearchTerms &terms,
                                                 const std::function<bool()> &shouldStop);

    /// How a file was listed once. Its lines may be listed still, with other numbers.
    struct Earlier
    {
        std::shared_ptr<TDFindResultItem> file;
        QList<qint64> lineNumbers; ///< one for each of the file's nodes
    };

private:
    void _keepEarlier(const Earlier &earlier);
    void _takeEarlier(const Earlier &earlier, std::optional<FileDate> date);

    QList<FilePath> _gone; ///< were listed since the search, and had nothing to list when searched last
    QHash<FilePath, QList<Earlier>> _earlier; ///< the latest first
    qsizetype _earlierLines = 0;
    QHash<FilePath, StringEncoding> _chosenEncodings; ///< which the person said to read files in
};

} // namespace tidemark
