#pragma once

#include "foundation/TDError.h"
#include "matching/FileMatches.h"
#include "matching/FileSearchState.h"

#include <QByteArrayView>
#include <QStringView>

namespace tidemark {

class SearchContext;

/// The longest line that can be shown and replaced in, in UTF-16 units, line-end characters included.
inline constexpr qsizetype TD_LONGEST_LINE = 25000;

/// Searches lines of a file on one thread and collects those with matches. Both arguments must outlive it.
class MatchCollector
{
public:
    /// Drops what the context collected before.
    MatchCollector(SearchContext &context, FileSearchState &state);

    enum class LineCount { Needed, NotNeeded };
    /// Searches a block of whole lines in UTF-8, as far as its lines may match. The number of its first line
    /// becomes that of the line behind the block, where that is needed. On a failure, which is an
    /// expression's, the error is set and the number means nothing.
    void searchBlock(QByteArrayView block, qint64 &lineNumber, LineCount count, TDError &error);
    /// `bytes`: the line's UTF-8, or null where that isn't at hand.
    void searchLine(QStringView line, QByteArrayView bytes, qint64 lineNumber, TDError &error);

    /// What was found since the last call. Its encoding isn't known here.
    FileMatches take();

private:
    bool _searchCandidates(QByteArrayView block, qint64 &lineNumber, LineCount count, TDError &error);
    void _searchEveryLine(QByteArrayView block, qint64 &lineNumber, TDError &error);
    void _searchLineBytes(QByteArrayView bytes, qint64 lineNumber, TDError &error);
    void _addLine(QStringView line, QByteArrayView bytes, qint64 lineNumber);

    SearchContext &_context;
    FileSearchState &_state;
    FileMatches _matches; ///< but for the lines, which are the context's
};

} // namespace tidemark
