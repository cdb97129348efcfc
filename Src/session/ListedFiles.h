#pragma once

#include "foundation/FilePath.h"
#include "session/FindResults.h"
#include "session/SearchTerms.h"

#include <QSet>

#include <functional>
#include <optional>

namespace tidemark {

/// The listed files with what is in them now: those whose content has changed by the program's own doing are
/// searched again, as they were searched before, and the others are as they are. A file without a match goes,
/// and comes back when it has one again. Main thread only.
class ListedFiles
{
public:
    /// Another search lists something else from now on.
    void clear() { _gone.clear(); }

    /// `changed` are paths without links in them. Searches on other threads and delivers events meanwhile, so
    /// nobody may change the results until then. What a stop leaves unsearched is marked. Nothing when none
    /// of the files has changed, and when `shouldStop` says so before anything has begun.
    std::optional<FindResultItems> searchedAgain(FindResultItems files, const QSet<FilePath> &changed,
                                                 const SearchTerms &terms,
                                                 const std::function<bool()> &shouldStop);

private:
    QList<FilePath> _gone; ///< were listed since the search, and had no match when they were searched last
};

} // namespace tidemark
