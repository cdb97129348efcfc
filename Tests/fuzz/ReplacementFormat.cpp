// Format strings, applied to what an expression matches.
// An input is a byte of options, the find text and the format up to a line feed each, and the matched text.

#include "Fuzzing.h"

#include "replace/TDReplacement.h"

namespace tidemark::fuzz {

void run(Input &input)
{
    const unsigned options = input.below(8);
    const QString findText = QString::fromUtf8(input.line());
    const QString format = QString::fromUtf8(input.line());
    const QString matched = QString::fromUtf8(input.rest());

    const TimeLimit limit;
    const TDReplacement replacement(
        findText, format,
        {options & 4 ? SearchMode::UnicodeExpression : SearchMode::RegularExpression,
         options & 1 ? CaseRule::Ignore : CaseRule::Exact},
        options & 2 ? ReplacementExtent::EveryOccurrence : ReplacementExtent::FirstOccurrence);
    TDError error;
    const std::optional<QString> text = replacement.replacementForMatchedText(matched, error);
    limit.check("replacing ends soon", 2);
    require(text.has_value() == error.isNull(), "a text or an error");
    require(error.isNull() || error.hasCode(TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR),
            "the error is that of expressions");
    // Where nothing in the format is special, it stands for itself.
    if (text && !format.contains(u'$') && !format.contains(u'\\') && findText == u"^(?:.|\\n)+$" &&
        !matched.isEmpty())
        require(*text == format, "a plain format is the replacement");
}

} // namespace tidemark::fuzz
