#include "replace/TDReplaceEngine.h"

#include "foundation/TDFileCommon.h"
#include "replace/MatchLineReplacement.h"

namespace tidemark {

namespace {

/// Takes an emptied match out of the line; true when the highlight now stands on the match behind it.
bool removeEmptiedMatch(TDMatchLine &line, qint64 index)
{
    line.removeMatchRange(index);
    const bool isFollowed = index + 1 <= qint64(line.numberOfMatches());
    line.setHighlightedMatchIndex(isFollowed ? index : TD_NO_HIGHLIGHTED_MATCH);
    return isFollowed;
}

} // namespace

bool TDReplaceEngine::performReplaceWithSave(Save save, TDFindResultItem &item, const ReplaceRequest &request,
                                             TDError &error)
{
    if (item.matchLine() == nullptr || item.parent() == nullptr)
        return false;
    TDMatchLine &line = *item.matchLine();
    const qint64 index = line.highlightedMatchIndex();
    if (index < 0 || index >= qint64(line.numberOfMatches()))
        return false;

    const SavedMatchLine before(line);
    const TDReplacement replacement(request.findText, request.replaceText, request.options,
                                    ReplacementExtent::FirstOccurrence);
    const std::optional<AppliedReplacement> applied = replaceMatch(line, index, replacement, error);
    if (!applied)
        return false;

    TDFindResultItem &file = *item.parent();
    const bool failed =
        save == Save::Yes && !saveLinesToDisk(file, {item.sharedMatchLine()}, request.isFileInSearchLocations,
                                              error, request.undoStep);
    if (failed)
        before.restore(line);
    if (save == Save::Yes)
        file.setRemark(failed ? error.localizedFailureReason() : QString());
    const bool standsOnNextMatch = !failed && applied->newLength == 0 && removeEmptiedMatch(line, index);
    file.setModificationDate(TDFileCommon::fileModificationDate(file.path()));
    return standsOnNextMatch;
}

} // namespace tidemark
