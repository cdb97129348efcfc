#pragma once

#include "matching/TDFindResultItem.h"

#include <optional>

namespace tidemark {

class ReplacementPreview;

/// A match on a line of a file, as it stands there now.
struct ContextMatch
{
    TextRange range; ///< of the line
    bool isHighlighted = false;
    bool isReplaced = false;
    /// What it would become; nothing where it stays as it is, or where that isn't asked for.
    std::optional<QString> replacement;
};

/// The matches that are listed for the line of the file, if the line still reads as it was found or saved:
/// none otherwise. `text` is without its line end. The preview may be null.
QList<ContextMatch> contextMatches(const TDFindResultItem &file, qint64 lineNumber, const QString &text,
                                   const ReplacementPreview *preview);

} // namespace tidemark
