#pragma once

#include "text/StyledText.h"

#include <QList>

namespace tidemark {

class TDFindResultItem;
class TDMatchLine;
struct LinePreview;

inline constexpr StyledColor TD_MATCH_BACKGROUND = {241 / 255.0, 224 / 255.0, 169 / 255.0};
inline constexpr StyledColor TD_HIGHLIGHTED_MATCH_BACKGROUND = {1.0, 147 / 255.0, 32 / 255.0};
/// The colour of what is wrong, on a light ground.
inline constexpr StyledColor PROBLEM_COLOR = {164 / 255.0, 38 / 255.0, 44 / 255.0};

/// How a match line looks, and where in that text each of its matches stands.
struct MatchLineLook
{
    StyledText styled;
    QList<TextRange> matches;
};

/// Line number and line, control characters but tabs as bullets, the matches in their colours, those that
/// were replaced underlined. Made anew at each call: a million lines that were scrolled past would keep a
/// million texts. With a preview each match that would change is struck out, and what it would become stands
/// underlined behind it, line ends as arrows; a problem stands behind the line.
MatchLineLook matchLineLook(const TDMatchLine &line, bool selected, const LinePreview *preview);

/// The same without a preview, tabs as bullets too.
StyledText buildMatchLineAttributedString(const TDMatchLine &line, bool selected);

/// What stands in the first column: a match line as above, an error's reason, or a file's name.
StyledText displayFilenameOrMatchLine(const TDFindResultItem &item, bool selected);

/// How much of a long line is shown while nobody looks at it.
inline constexpr qsizetype EXCERPT_LENGTH = 200;
enum class LineExtent { Excerpt, Whole };

/// What a row of the results shows: the line without its number.
struct ShownLine
{
    MatchLineLook look;
    bool isLong = false; ///< beyond an excerpt, whatever is shown of it
};

/// An excerpt stands around the first match, with "…" where something is left out; matches outside of it have
/// no place in the look. A problem is always in sight.
ShownLine shownLine(const TDMatchLine &line, const LinePreview *preview, LineExtent extent);

} // namespace tidemark
