#pragma once

#include "foundation/PlainTextPattern.h"
#include "foundation/TDError.h"
#include "foundation/TextRange.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

namespace tidemark {

/// A find text, compiled once and shared by everything that searches for it. It holds both readings, plain
/// text and regular expression; which one is in force is a setting of the whole application and is looked up
/// at every search. Immutable to its users: any number of threads may search with one object.
class TDFindPattern
{
public:
    TDFindPattern(const QString &findText, CaseRule caseRule);
    ~TDFindPattern();

    const QString &findText() const { return _findText; }
    CaseRule caseRule() const { return _plainText.caseRule(); }

    class Line;

private:
    struct Expression;
    const Expression &_expression() const;

    QString _findText;
    PlainTextPattern _plainText;
    std::unique_ptr<Expression> _compiledExpression;
};

/// One line being searched, with what several searches within it share.
class TDFindPattern::Line
{
public:
    /// Both must outlive the object.
    Line(const TDFindPattern &pattern, const QString &line) : _pattern(pattern), _line(line) {}

    /// The first match within the range of the line, or not found. An empty match at the very start of the line
    /// counts as not found. With a regular expression the range is taken as a range of the line's UTF-8 bytes,
    /// and so is the one returned; nothing before the range is visible to it. A malformed expression, or one
    /// that fails while searching, sets error code 36.
    TextRange firstRange(TextRange searchRange, TDError &error);

private:
    TextRange _firstRangeOfExpression(TextRange searchRange, TDError &error);

    const TDFindPattern &_pattern;
    const QString &_line;
    std::optional<QByteArray> _bytes;
};

} // namespace tidemark
