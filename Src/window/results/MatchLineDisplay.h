#pragma once

#include "text/StyledText.h"

#include <QList>

namespace tidemark {

class TDFindResultItem;
class TDMatchLine;
class TDReplacement;

/// How a match line looks, and where in that text each of its matches stands.
struct MatchLineLook
{
    StyledText styled;
    QList<TextRange> matches;
};

/// Line number and line, control characters as bullets, the matches in their colours. Made anew at each call:
/// a million lines that were scrolled past would keep a million texts. With a replacement each match that it
/// would change is struck out, and what it would become stands underlined behind it, line ends as arrows.
MatchLineLook matchLineLook(const TDMatchLine &line, bool selected, const TDReplacement *replacement);

/// The same without replacements.
StyledText buildMatchLineAttributedString(const TDMatchLine &line, bool selected);

/// What stands in the first column: a match line as above, an error's reason, or a file's name.
StyledText displayFilenameOrMatchLine(const TDFindResultItem &item, bool selected);

} // namespace tidemark
