#pragma once

#include "text/StyledText.h"

namespace tidemark {

class TDFindResultItem;
class TDMatchLine;

/// Line number and line, control characters as bullets, the matches in their colours. Made anew at each call:
/// a million lines that were scrolled past would keep a million texts.
StyledText buildMatchLineAttributedString(const TDMatchLine &line, bool selected);

/// What stands in the first column: a match line as above, an error's reason, or a file's name.
StyledText displayFilenameOrMatchLine(const TDFindResultItem &item, bool selected);

} // namespace tidemark
