// Arbitrary expressions in arbitrary lines: they end soon, and the prefilter changes nothing.
// Expressions over characters never fail on a line, and their matches are ordered ranges of it.
// An input is a byte of options, the find text up to a line feed, and the file.

#include "Fuzzing.h"

#include "foundation/UserDefaults.h"
#include "matching/SearchContext.h"
#include "matching/SearchDescription.h"

namespace tidemark::fuzz {

void run(Input &input)
{
    const unsigned options = input.below(16);
    const CaseRule caseRule = options & 1 ? CaseRule::Ignore : CaseRule::Exact;
    const bool isSearchedInBlocks = (options & 2) == 0; // the matcher for blocks takes long to compile
    const QString findText = QString::fromUtf8(input.line());
    const FilePath path = writeFile("file", input.rest());
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, TD_ENCODING_UTF8);

    const TimeLimit compiling;
    const TDFindPattern pattern(findText,
                                {options & 4 ? SearchMode::UnicodeExpression : SearchMode::RegularExpression,
                                 caseRule, (options & 8) != 0});
    if (isSearchedInBlocks)
        pattern.prefilter();
    compiling.check("compiling ends soon", 1);

    const TimeLimit searching;
    const SearchDescription lines = SearchDescription::byLines(path, pattern);
    searching.check("searching ends soon", 2);
    if (!isSearchedInBlocks)
        return;
    SearchContext context(pattern);
    const SearchDescription blocks = SearchDescription::byBlocks(path, context);
    // A line without a match that the prefilter leaves out can't show how long it would take.
    if (!lines.isExpressionFault)
        require(lines.text == blocks.text, "the same result in blocks", lines.text + "\n" + blocks.text);
}

} // namespace tidemark::fuzz
