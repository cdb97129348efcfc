#pragma once

#include "matching/FoundLines.h"
#include "matching/LinePrefilter.h"
#include "matching/TDFindPattern.h"
#include "reading/TextBlockReader.h"

#include <memory>
#include <vector>

namespace tidemark {

/// What one thread needs to search any number of files for one pattern, kept from file to file.
class SearchContext
{
public:
    /// The pattern must outlive the context.
    explicit SearchContext(const TDFindPattern &pattern) : _pattern(pattern) {}

    const TDFindPattern &pattern() const { return _pattern; }
    TextBlockReader &reader() { return _reader; }
    /// Of the file being searched.
    FoundLines &foundLines() { return _foundLines; }
    /// Room for a line's text.
    std::vector<char16_t> &lineText() { return _lineText; }
    /// Room for the candidate lines of a block.
    std::vector<LineSpan> &candidates() { return _candidates; }
    /// Null when there is no prefilter for the pattern.
    LinePrefilter::Scanner *scanner();

private:
    const TDFindPattern &_pattern;
    TextBlockReader _reader;
    FoundLines _foundLines;
    std::vector<char16_t> _lineText;
    std::vector<LineSpan> _candidates;
    std::unique_ptr<LinePrefilter::Scanner> _scanner;
};

} // namespace tidemark
