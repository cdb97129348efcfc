#pragma once

#include "matching/FoundLines.h"
#include "matching/LinePrefilter.h"
#include "matching/TDFindPattern.h"
#include "reading/TextBlockReader.h"

#include <memory>
#include <vector>

namespace tidemark {

class TDMatchLineHighlighter;

/// What one thread needs to search any number of files for one pattern, kept from file to file.
class SearchContext
{
public:
    /// The pattern must outlive the context.
    explicit SearchContext(const TDFindPattern &pattern) : _pattern(pattern) {}

    const TDFindPattern &pattern() const { return _pattern; }
    TextBlockReader &reader() { return _reader; }
    /// Kept for the next file when the last one had no use for it; may be null.
    std::shared_ptr<TDMatchLineHighlighter> &spareHighlighter() { return _spareHighlighter; }
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
    std::shared_ptr<TDMatchLineHighlighter> _spareHighlighter;
    FoundLines _foundLines;
    std::vector<char16_t> _lineText;
    std::vector<LineSpan> _candidates;
    std::unique_ptr<LinePrefilter::Scanner> _scanner;
};

} // namespace tidemark
