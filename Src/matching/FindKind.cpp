#include "matching/FindKind.h"

namespace tidemark {

std::shared_ptr<const FindKind> FindKind::make(const QString &findText, const FindOptions &options)
{
    switch (options.mode) {
    case SearchMode::RegularExpression:
        return makeByteExpressionKind(findText, options);
    case SearchMode::UnicodeExpression:
        return makeUnicodeExpressionKind(findText, options);
    case SearchMode::PlainText:
        break;
    }
    return makePlainTextKind(findText, options);
}

const LinePrefilter *FindKind::prefilter() const
{
    std::call_once(_prefilterOnce, [this] { _prefilter = makePrefilter(); });
    return _prefilter.get();
}

TextRange FindKind::nextMatch(SearchedLine &line, TDError &error) const
{
    while (line.rest().isFound()) {
        const TextRange found = firstRange(line, line.rest(), error);
        if (found.isFound() && _options.wholeWords && !isWholeWord(line, found)) {
            line.continueAt(positionBehindFailedWord(line, found));
            continue;
        }
        // Going on at an empty match would find it again for ever.
        if (!found.isFound() || found.end() == line.rest().end())
            line.finish();
        else
            line.continueAt(found.end() + (found.length == 0 ? 1 : 0));
        return found;
    }
    return TextRange::notFound();
}

} // namespace tidemark
