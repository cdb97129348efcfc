#pragma once

#include "foundation/TDError.h"
#include "matching/TDMatchLine.h"
#include "replace/TDReplacement.h"
#include "text/TextRange.h"

#include <functional>
#include <optional>
#include <vector>

namespace tidemark {

/// What a replacement in a match line did.
struct AppliedReplacement
{
    qint64 newLength = 0; ///< of the range that now covers the replacement, in UTF-16 units
    qint64 offset = 0;    ///< by how much everything behind it moved
};

/// Replaces the match at the index in the line's text, gives the range its new length and moves the later
/// ones. A range that reaches beyond the line is cut to it. Nothing, and nothing changed, when the
/// replacement can't be formed.
std::optional<AppliedReplacement> replaceMatch(TDMatchLine &line, qint64 index,
                                               const TDReplacement &replacement, TDError &error);

/// What a line becomes when its matches are replaced, but for those that were replaced before.
struct ReplacedLine
{
    QString text;
    QList<TextRange> ranges;    ///< of the matches in it
    qint64 count = 0;           ///< of those replaced now
    qint64 lastLength = 0;      ///< of the last replacement formed; meaningless when there was none
    std::vector<bool> replaced; ///< by match, now and before
};

/// Changes nothing: what replaceMatches() would make of the line, up to the first match that can't be
/// replaced, which leaves the error set, or until `shouldStop`, which is asked before each.
ReplacedLine replacedLine(const TDMatchLine &line, const TDReplacement &replacement,
                          const std::function<bool()> &shouldStop, TDError &error);

/// How far a run over all matches of a line came.
struct ReplacedMatches
{
    qint64 count = 0;
    qint64 lastLength = 0; ///< of the last replacement formed; meaningless when there was none
};

/// The same for every match of the line from the first on that wasn't replaced before, in one pass, until
/// `shouldStop`, which is asked before each, says so. What was replaced before a failure or a stop stays
/// replaced.
ReplacedMatches replaceMatches(TDMatchLine &line, const TDReplacement &replacement,
                               const std::function<bool()> &shouldStop, TDError &error);

/// A match line's text, ranges and highlight as they were, to put back.
class SavedMatchLine
{
public:
    explicit SavedMatchLine(const TDMatchLine &line)
        : _text(line.matchLineString()), _ranges(line.matchRanges()), _foundRanges(line.foundRanges()),
          _replaced(line.replacedMatches()), _highlightedMatchIndex(line.highlightedMatchIndex())
    {}
    void restore(TDMatchLine &line) const;

private:
    QString _text;
    QList<TextRange> _ranges;
    QList<TextRange> _foundRanges;
    std::vector<bool> _replaced;
    qint64 _highlightedMatchIndex;
};

} // namespace tidemark
