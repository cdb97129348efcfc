#pragma once

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
    /// Room for the candidate lines of a block.
    std::vector<LineSpan> &candidates() { return _candidates; }
    /// For the reading of the find text that is in force now; null when there is no prefilter for it.
    LinePrefilter::Scanner *scanner();

private:
    const TDFindPattern &_pattern;
    TextBlockReader _reader;
    std::vector<LineSpan> _candidates;
    const LinePrefilter *_scannedWith = nullptr;
    std::unique_ptr<LinePrefilter::Scanner> _scanner;
};

} // namespace tidemark
