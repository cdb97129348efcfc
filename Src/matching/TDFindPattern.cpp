#include "matching/TDFindPattern.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "foundation/Utf8.h"
#include "matching/ExpressionComplexity.h"
#include "matching/RegularExpression.h"

#include <mutex>

namespace tidemark {

namespace {

TDError expressionError(ExpressionFault fault, const QString &findText)
{
    return TDError::initalizePresentErrorWithCode(
        TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR,
        formatted(localizedString("Sorry, a problem occured whilst attempting to search using the regular "
                                  "expression ‘%@’."),
                  {findText}),
        fault == ExpressionFault::Malformed
            ? localizedString("The find text regular expression is malformed.")
            : localizedString("The find text regular expression caused an internal error."),
        recoverySuggestionForExpression(fault));
}

} // namespace

/// Compiled at the first search, so that a malformed expression shows itself only when something is searched.
struct TDFindPattern::Expression
{
    std::once_flag once;
    boost::regex compiled;
    qsizetype harmlessLineSize = 0;
    ExpressionFault fault = ExpressionFault::None;

    void compile(const QString &findText, CaseRule caseRule)
    {
        const QByteArray bytes = generalizedUtf8(findText);
        harmlessLineSize = ExpressionComplexity(bytes).harmlessLineSize;
        fault = expressionFaultOf([&] { compiled = compiledExpression(bytes, caseRule); });
    }
};

struct TDFindPattern::Prefilters
{
    std::once_flag plainTextOnce;
    std::once_flag expressionOnce;
    std::unique_ptr<const LinePrefilter> plainText;
    std::unique_ptr<const LinePrefilter> expression;
};

TDFindPattern::TDFindPattern(const QString &findText, CaseRule caseRule)
    : _findText(findText), _plainText(findText, caseRule),
      _compiledExpression(std::make_unique<Expression>()), _prefilters(std::make_unique<Prefilters>())
{}

TDFindPattern::~TDFindPattern() = default;

const TDFindPattern::Expression &TDFindPattern::_expression() const
{
    std::call_once(_compiledExpression->once,
                   [this] { _compiledExpression->compile(_findText, _plainText.caseRule()); });
    return *_compiledExpression;
}

const LinePrefilter *TDFindPattern::prefilter() const
{
    if (UserDefaults::standard().boolFor(BooleanSetting::RegularExpression)) {
        std::call_once(_prefilters->expressionOnce, [this] {
            // A faulty expression has to show itself at the first line.
            if (_expression().fault == ExpressionFault::None)
                _prefilters->expression =
                    LinePrefilter::forExpression(generalizedUtf8(_findText), _plainText.caseRule());
        });
        return _prefilters->expression.get();
    }
    std::call_once(_prefilters->plainTextOnce,
                   [this] { _prefilters->plainText = LinePrefilter::forPlainText(_plainText); });
    return _prefilters->plainText.get();
}

TDFindPattern::Line::Line(const TDFindPattern &pattern, QStringView line, QByteArrayView bytes)
    : _pattern(pattern), _line(line), _bytes(bytes), _effort(line.size())
{}

TextRange TDFindPattern::Line::firstRange(TextRange searchRange, TDError &error)
{
    if (UserDefaults::standard().boolFor(BooleanSetting::RegularExpression))
        return _firstRangeOfExpression(searchRange, error);
    return _pattern._plainText.firstRange(_line, searchRange);
}

TextRange TDFindPattern::Line::_firstRangeOfExpression(TextRange searchRange, TDError &error)
{
    const Expression &expression = _pattern._expression();
    ExpressionFault fault = expression.fault;
    TextRange found = TextRange::notFound();
    if (fault == ExpressionFault::None) {
        if (_bytes.isNull()) {
            _ownBytes = generalizedUtf8(_line);
            _bytes = _ownBytes;
        }
        fault = expressionFaultOf([&] {
            // The search range counts UTF-16 units and is applied to bytes as it stands.
            found = _bytes.size() <= expression.harmlessLineSize
                        ? firstMatch(expression.compiled, _bytes, searchRange)
                        : firstMatch(expression.compiled, _bytes, searchRange, _effort);
        });
    }
    if (fault == ExpressionFault::None)
        return found == TextRange{0, 0} ? TextRange::notFound() : found;
    error = expressionError(fault, _pattern._findText);
    return TextRange::notFound();
}

} // namespace tidemark
