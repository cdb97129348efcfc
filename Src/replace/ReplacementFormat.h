#pragma once

#include "matching/UnicodeExpression.h"
#include "text/TextRange.h"

#include <QList>
#include <QString>
#include <QStringView>

#include <optional>
#include <vector>

namespace tidemark {

/// A replace text in Perl's format syntax, parsed once into pieces: `$1`, `${12}`, `${name}`, `$+{name}`,
/// `$&`, `` $` ``, `$'`, `$+`, `$$`, `\n`, `\t`, `\r`, `\f`, `\a`, `\e`, `\x{…}`, `\l`, `\u`, `\L`, `\U`,
/// `\E`, and a backslash before punctuation, which stands for itself then. Immutable.
class ReplacementFormat
{
public:
    /// Nothing, with the fault, where a form is broken or the expression has no such group.
    static std::optional<ReplacementFormat> parsed(QStringView format, const UnicodeExpression &expression,
                                                   TextFault &fault);

    /// What stands in place of a match: its groups, the whole match first, are ranges of the line that it
    /// was found in.
    QString expansion(QStringView line, const QList<TextRange> &groups) const;

private:
    friend class FormatParser;
    enum class Kind {
        Literal,
        Group, ///< of several the first that took part
        Before,
        After,
        NextLower,
        NextUpper,
        Lower,
        Upper,
        EndOfCase
    };
    struct Piece
    {
        Kind kind;
        QString text;
        QList<int> groups;
    };

    static QStringView _textOf(const Piece &piece, QStringView line, const QList<TextRange> &groups);

    std::vector<Piece> _pieces;
};

} // namespace tidemark
