#pragma once

#include "foundation/TDError.h"
#include "matching/FindOptions.h"
#include "matching/TDFindPattern.h"

#include <QString>
#include <QStringView>

#include <memory>
#include <optional>

namespace tidemark {

/// How much of a matched text an expression replaces when it is applied to that text.
enum class ReplacementExtent { FirstOccurrence, EveryOccurrence };

/// Computes what stands in place of a match, as a pure function, compiled once. Plain text gives the replace
/// text as it is. An expression over bytes is applied to the matched text alone with the replace text as a
/// Perl format string, so anchors and look-around see nothing of the rest of the line. With an expression
/// over characters the match is found again in the line as it was found, and the format is filled with the
/// groups that it has there.
class TDReplacement
{
public:
    TDReplacement(const QString &findText, const QString &replaceText, const FindOptions &options,
                  ReplacementExtent extent);
    TDReplacement(TDReplacement &&) noexcept;
    ~TDReplacement();

    /// What is wrong with the replace text, where that can be told without a match.
    std::optional<TextFault> formatFault() const;
    /// Whether a replacement depends on more than the matched text.
    bool looksAtLine() const { return _formattedPattern != nullptr; }
    class InLine;

    /// As if the matched text were the whole line. Nothing, with error code 36, when the expression or the
    /// format is malformed, when applying it fails, or when the result (or the matched text) has no UTF-8
    /// form.
    std::optional<QString> replacementForMatchedText(QStringView matchedText, TDError &error) const;

private:
    struct Expression;
    struct FormattedPattern;
    std::optional<QString> _appliedExpression(QStringView matchedText, TDError &error) const;

    QString _replaceText;
    FindOptions _options;
    ReplacementExtent _extent;
    std::unique_ptr<Expression> _expression;
    std::unique_ptr<FormattedPattern> _formattedPattern;
};

/// The replacements of a line's matches, to be asked for in the order of the line.
class TDReplacement::InLine
{
public:
    /// Both must outlive the object. The line is as it was found, whatever has been replaced in it since;
    /// only a replacement that looksAtLine() needs it.
    InLine(const TDReplacement &replacement, const QString &foundLine);
    ~InLine();

    /// Of the match that was found in this range and now reads so. Where the find text doesn't match in this
    /// range, which is so when it was changed since, the match stays as it is. Fails as
    /// replacementForMatchedText().
    std::optional<QString> replacementFor(TextRange foundRange, QStringView matchedText, TDError &error);

private:
    std::optional<QString> _expansion(TextRange foundRange, QStringView matchedText, TDError &error);

    const TDReplacement &_replacement;
    const QString &_foundLine;
    std::unique_ptr<TDFindPattern::Line> _matches;
    TextRange _found;
    bool _isAhead = false; ///< what was found lies behind what was asked for
};

} // namespace tidemark
