#include "matching/SearchContext.h"

namespace tidemark {

LinePrefilter::Scanner *SearchContext::scanner()
{
    const LinePrefilter *prefilter = _pattern.prefilter();
    if (prefilter == nullptr)
        return nullptr;
    if (prefilter != _scannedWith) {
        _scanner = std::make_unique<LinePrefilter::Scanner>(*prefilter);
        _scannedWith = prefilter;
    }
    return _scanner.get();
}

} // namespace tidemark
