#include "foundation/AbandonableWork.h"
#include "foundation/LocalizedText.h"
#include "matching/ExpressionComplexity.h"
#include "matching/FindKind.h"
#include "matching/RegularExpression.h"
#include "matching/WholeWords.h"
#include "text/Utf8.h"

#include <algorithm>

namespace tidemark {

namespace {

/// Compiled at the first search, so that a malformed expression shows itself only when something is searched.
class ByteExpressionKind : public FindKind
{
public:
    ByteExpressionKind(const QString &findText, const FindOptions &options)
        : FindKind(options), _findText(findText), _bytes(generalizedUtf8(findText)),
          _caseRule(options.caseRule)
    {}

    TextRange firstRange(SearchedLine &line, TextRange searchRange, TDError &error) const override;

protected:
    bool isWholeWord(SearchedLine &line, TextRange range) const override
    {
        return tidemark::isWholeWord(line.bytes(), range);
    }
    qint64 positionBehindFailedWord(SearchedLine &line, TextRange range) const override
    {
        return tidemark::positionBehindFailedWord(line.bytes(), range);
    }
    std::unique_ptr<const LinePrefilter> makePrefilter() const override;

private:
    struct Expression
    {
        boost::regex compiled;
        qsizetype harmlessLineSize = 0;
        ExpressionFault fault = ExpressionFault::None;
        std::optional<TextFault> textFault;
    };
    std::optional<TextFault> fault() const override { return _compiled().textFault; }
    void _compile() const;
    const Expression &_compiled() const;
    TextRange _firstMatch(SearchedLine &line, TextRange searchRange) const;
    bool _mayMatchIn(SearchedLine &line) const;

    QString _findText;
    QByteArray _bytes;
    CaseRule _caseRule;
    mutable std::once_flag _once;
    mutable Expression _expression;
};

const ByteExpressionKind::Expression &ByteExpressionKind::_compiled() const
{
    std::call_once(_once, [this] {
        _expression.harmlessLineSize = ExpressionComplexity(_bytes).harmlessLineSize;
        _expression.fault = expressionFaultOf([this] { _compile(); });
    });
    return _expression;
}

void ByteExpressionKind::_compile() const
{
    try {
        _expression.compiled = compiledExpressionAbandonably(_bytes, _caseRule);
    } catch (const boost::regex_error &error) {
        // The library repeats the expression behind what is wrong with it.
        const QString message = QString::fromUtf8(error.what()).section(QStringLiteral("  The error"), 0, 0);
        const qsizetype byte = std::clamp<qsizetype>(error.position(), 0, _bytes.size());
        _expression.textFault = {message.trimmed(), QString::fromUtf8(_bytes.first(byte)).size()};
        throw;
    }
}

std::unique_ptr<const LinePrefilter> ByteExpressionKind::makePrefilter() const
{
    // A faulty expression has to show itself at the first line.
    if (_compiled().fault != ExpressionFault::None)
        return nullptr;
    const auto make = [bytes = _bytes, caseRule = _caseRule] {
        return LinePrefilter::forExpression(bytes, caseRule);
    };
    return resultOfAbandonable(make, LONGEST_COMPILATION).value_or(nullptr);
}

TextRange ByteExpressionKind::firstRange(SearchedLine &line, TextRange searchRange, TDError &error) const
{
    TextRange found = TextRange::notFound();
    ExpressionFault fault = _compiled().fault;
    if (fault == ExpressionFault::None) {
        fault = expressionFaultOf([&] { found = _firstMatch(line, searchRange); });
        // With the prefilter such a line is left out, and nobody learns that it takes long. It is the same
        // without.
        if (fault != ExpressionFault::None && !_mayMatchIn(line))
            fault = ExpressionFault::None;
    }
    if (fault == ExpressionFault::None)
        return found == TextRange{0, 0} ? TextRange::notFound() : found;
    error = searchError(fault, _findText);
    return TextRange::notFound();
}

/// The search range counts UTF-16 units and is applied to bytes as it stands.
TextRange ByteExpressionKind::_firstMatch(SearchedLine &line, TextRange searchRange) const
{
    const Expression &expression = _compiled();
    const QByteArrayView bytes = line.bytes();
    if (bytes.size() <= expression.harmlessLineSize)
        return tidemark::firstMatch(expression.compiled, bytes, searchRange);
    return tidemark::firstMatch(expression.compiled, bytes, searchRange, line.effort());
}

bool ByteExpressionKind::_mayMatchIn(SearchedLine &line) const
{
    const LinePrefilter *const chooses = prefilter();
    if (chooses == nullptr)
        return true;
    std::vector<LineSpan> candidates;
    return !LinePrefilter::Scanner(*chooses).candidateLines(line.bytes(), candidates) || !candidates.empty();
}

} // namespace

std::shared_ptr<const FindKind> makeByteExpressionKind(const QString &findText, const FindOptions &options)
{
    return std::make_shared<ByteExpressionKind>(findText, options);
}

} // namespace tidemark
