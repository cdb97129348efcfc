#include "matching/TDFindPattern.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "foundation/Utf8.h"
#include "matching/RegularExpression.h"

#include <mutex>

namespace tidemark {

namespace {

enum class Fault { None, Malformed, Internal };

TDError expressionError(Fault fault, const QString &findText)
{
    const bool malformed = fault == Fault::Malformed;
    return TDError::initalizePresentErrorWithCode(
        TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR,
        formatted(localizedString("Sorry, a problem occured whilst attempting to search using the regular "
                                  "expression ‘%@’."),
                  {findText}),
        malformed ? localizedString("The find text regular expression is malformed.")
                  : localizedString("The find text regular expression caused an internal error."),
        malformed ? localizedString("Review the regular expression in the find text field and ensure it is valid. "
                                    "Or uncheck the Regular expression checkbox if you want to perform a normal "
                                    "text search.")
                  : localizedString("Review the regular expression in the find text field and ensure it is valid.  "
                                    "Or uncheck the Regular expression checkbox if you want to perform a normal "
                                    "text search."));
}

} // namespace

/// Compiled at the first search, so that a malformed expression shows itself only when something is searched.
struct TDFindPattern::Expression
{
    std::once_flag once;
    boost::regex compiled;
    Fault fault = Fault::None;

    void compile(const QString &findText, CaseRule caseRule)
    {
        try {
            compiled = compiledExpression(generalizedUtf8(findText), caseRule);
        } catch (const boost::regex_error &) {
            fault = Fault::Malformed;
        } catch (const std::runtime_error &) {
            fault = Fault::Internal;
        }
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
    : _findText(findText), _plainText(findText, caseRule), _compiledExpression(std::make_unique<Expression>()),
      _prefilters(std::make_unique<Prefilters>())
{
}

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
            if (_expression().fault == Fault::None)
                _prefilters->expression =
                    LinePrefilter::forExpression(generalizedUtf8(_findText), _plainText.caseRule());
        });
        return _prefilters->expression.get();
    }
    std::call_once(_prefilters->plainTextOnce,
                   [this] { _prefilters->plainText = LinePrefilter::forPlainText(_plainText); });
    return _prefilters->plainText.get();
}

TextRange TDFindPattern::Line::firstRange(TextRange searchRange, TDError &error)
{
    if (UserDefaults::standard().boolFor(BooleanSetting::RegularExpression))
        return _firstRangeOfExpression(searchRange, error);
    return _pattern._plainText.firstRange(_line, searchRange);
}

TextRange TDFindPattern::Line::_firstRangeOfExpression(TextRange searchRange, TDError &error)
{
    const Expression &expression = _pattern._expression();
    Fault fault = expression.fault;
    if (fault == Fault::None) {
        if (_bytes.isNull()) {
            _ownBytes = generalizedUtf8(_line);
            _bytes = _ownBytes;
        }
        const char *start = _bytes.data() + searchRange.location;
        boost::cmatch match;
        try {
            // The search range counts UTF-16 units and is applied to bytes as it stands.
            if (!boost::regex_search(start, start + searchRange.length, match, expression.compiled,
                                     boost::match_default, start))
                return TextRange::notFound();
            const TextRange found = {match[0].first - _bytes.data(), match.length(0)};
            return found == TextRange{0, 0} ? TextRange::notFound() : found;
        } catch (const boost::regex_error &) {
            fault = Fault::Malformed;
        } catch (const std::runtime_error &) {
            fault = Fault::Internal;
        }
    }
    error = expressionError(fault, _pattern._findText);
    return TextRange::notFound();
}

} // namespace tidemark
