#pragma once

#include "text/StyledText.h"

#include <QList>

namespace tidemark {

class TDFindResultItem;
class TDMatchLine;
struct LinePreview;

/// How a match line looks, and where in that text each of its matches stands.
struct MatchLineLook
{
    StyledText styled;
    QList<TextRange> matches;
};

/// The colour of what is wrong, on a light ground.
inline constexpr StyledColor PROBLEM_COLOR = {164 / 255.0, 38 / 255.0, 44 / 255.0};

/// Line number and line, control characters as bullets, the matches in their colours, those that were
/// replaced underlined. Made anew at each call: a million lines that were scrolled past would keep a million
/// texts. With a preview each match that would change is struck out, and what it would become stands
/// underlined behind it, line ends as arrows; a problem stands behind the line.
MatchLineLook matchLineLook(const TDMatchLine &line, bool selected, const LinePreview *preview);

/// The same without a preview.
StyledText buildMatchLineAttributedString(const TDMatchLine &line, bool selected);

/// What stands in the first column: a match line as above, an error's reason, or a file's name.
StyledText displayFilenameOrMatchLine(const TDFindResultItem &item, bool selected);

} // namespace tidemark
