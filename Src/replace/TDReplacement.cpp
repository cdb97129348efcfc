#include "replace/TDReplacement.h"

#include "foundation/LocalizedText.h"
#include "matching/BoundedSearch.h"
#include "matching/RegularExpression.h"
#include "replace/ReplacementFormat.h"
#include "text/LineEnds.h"
#include "text/TextEncoding.h"
#include "text/Utf8.h"

#include <iterator>

namespace tidemark {

namespace {

TDError replaceError(ExpressionFault fault)
{
    return TDError::initalizePresentErrorWithCode(
        TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR,
        localizedString("Sorry, a problem occured whilst attempting to replace using the find text regular "
                        "expression and replace text format string."),
        fault == ExpressionFault::Malformed
            ? localizedString(
                  "The find text regular expression and/or replace text format string are malformed.")
            : localizedString("The find text regular expression and/or replace text format string caused an "
                              "internal error."),
        recoverySuggestionForFormat(fault));
}

} // namespace

struct TDReplacement::Expression
{
    boost::regex compiled;
    std::string format;
    ExpressionFault fault = ExpressionFault::None;

    Expression(const QString &findText, const QString &replaceText, CaseRule caseRule)
        : format(generalizedUtf8(replaceText).toStdString())
    {
        fault = expressionFaultOf(
            [&] { compiled = compiledExpressionAbandonably(generalizedUtf8(findText), caseRule); });
    }
};

struct TDReplacement::FormattedPattern
{
    TDFindPattern pattern;
    std::optional<ReplacementFormat> format;
    std::optional<TextFault> fault;

    FormattedPattern(const QString &findText, const QString &replaceText, const FindOptions &options)
        : pattern(findText, options)
    {
        if (pattern.expression() == nullptr)
            return;
        TextFault found;
        format = ReplacementFormat::parsed(replaceText, *pattern.expression(), found);
        if (!format)
            fault = found;
    }
};

TDReplacement::TDReplacement(const QString &findText, const QString &replaceText, const FindOptions &options,
                             ReplacementExtent extent)
    : _replaceText(replaceText), _options(options), _extent(extent)
{
    if (options.mode == SearchMode::RegularExpression)
        _expression = std::make_unique<Expression>(findText, replaceText, options.caseRule);
    else if (options.mode == SearchMode::UnicodeExpression)
        _formattedPattern = std::make_unique<FormattedPattern>(findText, replaceText, options);
}

TDReplacement::TDReplacement(TDReplacement &&) noexcept = default;
TDReplacement::~TDReplacement() = default;

std::optional<TextFault> TDReplacement::formatFault() const
{
    return _formattedPattern ? _formattedPattern->fault : std::nullopt;
}

std::optional<QString> TDReplacement::replacementForMatchedText(QStringView matchedText, TDError &error) const
{
    if (looksAtLine()) {
        const QString line = matchedText.toString();
        return InLine(*this, line).replacementFor({0, line.size()}, matchedText, error);
    }
    return _options.mode == SearchMode::PlainText ? _replaceText : _appliedExpression(matchedText, error);
}

std::optional<QString> TDReplacement::_appliedExpression(QStringView matchedText, TDError &error) const
{
    // A match can cut a character in two, as positions count bytes; half a character can't be replaced.
    const std::optional<QByteArray> bytes = strictUtf8(matchedText);
    std::optional<QString> replaced;
    ExpressionFault fault = _expression->fault;
    if (fault == ExpressionFault::None && bytes) {
        const auto flags = _extent == ReplacementExtent::FirstOccurrence
                               ? boost::match_default | boost::format_first_only
                               : boost::match_default;
        fault = expressionFaultOf([&] {
            SearchEffort effort(bytes->size());
            const SearchEffort::Counting counting(effort);
            std::string result;
            boost::regex_replace(std::back_inserter(result), BoundedPosition(bytes->cbegin()),
                                 BoundedPosition(bytes->cend()), _expression->compiled, _expression->format,
                                 flags);
            replaced = textFromUtf8(QByteArrayView(result));
        });
    }
    if (replaced)
        return replaced;
    if (fault == ExpressionFault::None)
        fault = ExpressionFault::Internal;
    error = replaceError(fault);
    return {};
}

TDReplacement::InLine::InLine(const TDReplacement &replacement, const QString &foundLine)
    : _replacement(replacement), _foundLine(foundLine)
{
    if (replacement._formattedPattern)
        _matches = std::make_unique<TDFindPattern::Line>(replacement._formattedPattern->pattern, _foundLine);
}

TDReplacement::InLine::~InLine() = default;

std::optional<QString> TDReplacement::InLine::replacementFor(TextRange foundRange, QStringView matchedText,
                                                             TDError &error)
{
    return _matches ? _expansion(foundRange, matchedText, error)
                    : _replacement.replacementForMatchedText(matchedText, error);
}

std::optional<QString> TDReplacement::InLine::_expansion(TextRange foundRange, QStringView matchedText,
                                                         TDError &error)
{
    const std::optional<ReplacementFormat> &format = _replacement._formattedPattern->format;
    if (!format) {
        error = replaceError(ExpressionFault::Malformed);
        return {};
    }
    TDError searchError;
    if (!_isAhead)
        _found = _matches->nextMatch(searchError);
    // An empty match and another one can begin at the same place.
    while (_found.isFound() && _found != foundRange && _found.location <= foundRange.location)
        _found = _matches->nextMatch(searchError);
    _isAhead = _found.isFound() && _found != foundRange;
    if (_found == foundRange)
        return format->expansion(withoutLineEnd(_foundLine), _matches->groups());
    if (_isAhead || _matches->limit() == LineSearch::Found)
        return matchedText.toString();
    error = replaceError(ExpressionFault::Internal);
    return {};
}

} // namespace tidemark
