#include "foundation/AbandonableWork.h"
#include "matching/FindKind.h"
#include "matching/RegularExpression.h"
#include "matching/UnicodeExpression.h"
#include "matching/WholeWords.h"
#include "text/Utf8.h"

namespace tidemark {

namespace {

/// No line may take longer.
constexpr std::chrono::milliseconds LONGEST_SEARCH_OF_LINE(900);

/// Compiled at the first search, so that a malformed expression shows itself only when something is searched.
class UnicodeExpressionKind : public FindKind
{
public:
    UnicodeExpressionKind(const QString &findText, const FindOptions &options)
        : FindKind(options), _findText(findText)
    {}

    TextRange firstRange(SearchedLine &line, TextRange searchRange, TDError &error) const override;
    TextRange nextMatch(SearchedLine &line, TDError &error) const override;
    SearchEffort effortFor(qsizetype) const override { return SearchEffort(LONGEST_SEARCH_OF_LINE); }
    std::optional<TextFault> fault() const override { return _compiled().textFault; }
    const UnicodeExpression *expression() const override { return _compiled().expression.get(); }

protected:
    std::unique_ptr<const LinePrefilter> makePrefilter() const override;
    bool isWholeWord(SearchedLine &line, TextRange range) const override
    {
        return tidemark::isWholeWord(line.characters(), range);
    }
    qint64 positionBehindFailedWord(SearchedLine &line, TextRange range) const override
    {
        return tidemark::positionBehindFailedWord(line.characters(), range);
    }

private:
    struct Compiled
    {
        std::shared_ptr<const UnicodeExpression> expression;
        ExpressionFault fault = ExpressionFault::None;
        std::optional<TextFault> textFault;
    };
    const Compiled &_compiled() const;
    TextRange _next(const UnicodeExpression &expression, SearchedLine &line) const;

    QString _findText;
    mutable std::once_flag _once;
    mutable Compiled _made;
};

const UnicodeExpressionKind::Compiled &UnicodeExpressionKind::_compiled() const
{
    std::call_once(_once, [this] {
        const auto compile = [findText = _findText, caseRule = options().caseRule] {
            TextFault fault;
            auto expression = UnicodeExpression::compiled(findText, caseRule, fault);
            return std::pair(expression, fault);
        };
        const auto compiled = resultOfAbandonable(compile, LONGEST_COMPILATION);
        if (compiled && compiled->first) {
            _made.expression = compiled->first;
            return;
        }
        _made.fault = compiled ? ExpressionFault::Malformed : ExpressionFault::Internal;
        if (compiled)
            _made.textFault = compiled->second;
    });
    return _made;
}

std::unique_ptr<const LinePrefilter> UnicodeExpressionKind::makePrefilter() const
{
    // A faulty expression has to show itself at the first line.
    if (!_compiled().expression)
        return nullptr;
    const auto make = [bytes = generalizedUtf8(_findText), caseRule = options().caseRule] {
        return LinePrefilter::forUnicodeExpression(bytes, caseRule);
    };
    return resultOfAbandonable(make, LONGEST_COMPILATION).value_or(nullptr);
}

TextRange UnicodeExpressionKind::firstRange(SearchedLine &line, TextRange searchRange, TDError &error) const
{
    SearchedLine again(line.text(), {}, effortFor(line.text().size()));
    for (;;) {
        const TextRange found = nextMatch(again, error);
        if (!found.isFound() || found.end() > searchRange.end())
            return TextRange::notFound();
        if (found.location >= searchRange.location)
            return found;
    }
}

TextRange UnicodeExpressionKind::nextMatch(SearchedLine &line, TDError &error) const
{
    const Compiled &compiled = _compiled();
    if (compiled.expression)
        return _next(*compiled.expression, line);
    error = searchError(compiled.fault, _findText);
    return TextRange::notFound();
}

TextRange UnicodeExpressionKind::_next(const UnicodeExpression &expression, SearchedLine &line) const
{
    using EmptyAtStart = UnicodeExpression::EmptyAtStart;
    const QByteArrayView characters = line.characters();
    SearchedLine::Progress &progress = line.progress();
    while (progress.position <= characters.size()) {
        const LineSearch outcome = expression.search(
            characters, progress.position,
            progress.isBehindEmptyMatch ? EmptyAtStart::NotAllowed : EmptyAtStart::Allowed, line.effort());
        const TextRange found =
            outcome == LineSearch::Found ? UnicodeExpression::groupRange(0) : TextRange::notFound();
        if (outcome != LineSearch::Found && outcome != LineSearch::NotFound)
            line.setLimit(outcome);
        if (!found.isFound() || found.location < progress.position)
            break;
        progress.isBehindEmptyMatch = found.length == 0;
        progress.position = found.end();
        if (!options().wholeWords || isWholeWord(line, found))
            return line.unitsOf(found);
        progress.isBehindEmptyMatch = false;
        progress.position = positionBehindFailedWord(line, found);
    }
    progress.position = characters.size() + 1;
    return TextRange::notFound();
}

} // namespace

std::shared_ptr<const FindKind> makeUnicodeExpressionKind(const QString &findText, const FindOptions &options)
{
    return std::make_shared<UnicodeExpressionKind>(findText, options);
}

} // namespace tidemark
