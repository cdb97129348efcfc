#include "matching/SearchContext.h"

namespace tidemark {

LinePrefilter::Scanner *SearchContext::scanner()
{
    const LinePrefilter *prefilter = _pattern.prefilter();
    if (prefilter == nullptr)
        return nullptr;
    if (!_scanner)
        _scanner = std::make_unique<LinePrefilter::Scanner>(*prefilter);
    return _scanner.get();
}

} // namespace tidemark
