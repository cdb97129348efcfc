#pragma once

#include "foundation/TDError.h"
#include "matching/FindOptions.h"

#include <QString>
#include <QStringView>

#include <memory>
#include <optional>

namespace tidemark {

/// How much of a matched text an expression replaces when it is applied to that text.
enum class ReplacementExtent { FirstOccurrence, EveryOccurrence };

/// Computes what stands in place of a matched text: a pure function of find text, replace text and the
/// matched text alone, compiled once. Plain text gives the replace text as it is; a regular expression is
/// applied to the matched text with the replace text as a Perl format string, so anchors and look-around see
/// nothing of the rest of the line.
class TDReplacement
{
public:
    TDReplacement(const QString &findText, const QString &replaceText, const FindOptions &options,
                  ReplacementExtent extent);
    TDReplacement(TDReplacement &&) noexcept;
    ~TDReplacement();

    /// Nothing, with error code 36, when the expression or the format is malformed, when applying it fails,
    /// or when the result (or the matched text) has no UTF-8 form.
    std::optional<QString> replacementForMatchedText(QStringView matchedText, TDError &error) const;

private:
    struct Expression;
    std::optional<QString> _appliedExpression(QStringView matchedText, TDError &error) const;

    QString _replaceText;
    FindOptions _options;
    ReplacementExtent _extent;
    std::unique_ptr<Expression> _expression;
};

} // namespace tidemark
