#pragma once

#include "foundation/PlainTextPattern.h"
#include "foundation/TDError.h"
#include "foundation/TextRange.h"
#include "matching/BoundedSearch.h"
#include "matching/LinePrefilter.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <memory>

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

    /// What chooses lines for the reading that is in force now; null when every line has to be searched. Made
    /// when first asked for.
    const LinePrefilter *prefilter() const;

    class Line;

private:
    struct Expression;
    struct Prefilters;
    const Expression &_expression() const;

    QString _findText;
    PlainTextPattern _plainText;
    std::unique_ptr<Expression> _compiledExpression;
    std::unique_ptr<Prefilters> _prefilters;
};

/// One line being searched, with what several searches within it share.
class TDFindPattern::Line
{
public:
    /// All must outlive the object. `bytes` are the line's UTF-8 bytes where they are at hand.
    Line(const TDFindPattern &pattern, QStringView line, QByteArrayView bytes = {});

    /// The first match within the range of the line, or not found. An empty match at the very start of the
    /// line counts as not found. With a regular expression the range is taken as a range of the line's UTF-8
    /// bytes, and so is the one returned; nothing before the range is visible to it. A malformed expression,
    /// or one that fails while searching or takes too long, sets error code 36.
    TextRange firstRange(TextRange searchRange, TDError &error);

private:
    TextRange _firstRangeOfExpression(TextRange searchRange, TDError &error);

    const TDFindPattern &_pattern;
    QStringView _line;
    QByteArrayView _bytes; ///< null until they are needed
    QByteArray _ownBytes;
    SearchEffort _effort;
};

} // namespace tidemark
