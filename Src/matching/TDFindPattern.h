#pragma once

#include "matching/FindKind.h"
#include "matching/FindOptions.h"

#include <QByteArrayView>
#include <QList>
#include <QString>

#include <memory>

namespace tidemark {

/// A find text with the options that say how it is read. A value: copies share what was prepared for
/// searching, and any number of threads may search with it.
class TDFindPattern
{
public:
    TDFindPattern(const QString &findText, const FindOptions &options)
        : _findText(findText), _options(options), _kind(FindKind::make(findText, options))
    {}

    const QString &findText() const { return _findText; }
    const FindOptions &options() const { return _options; }
    CaseRule caseRule() const { return _options.caseRule; }

    /// Chooses lines in which there may be a match; null when every line has to be searched. Made when first
    /// asked for.
    const LinePrefilter *prefilter() const { return _kind->prefilter(); }

    /// What is wrong with the find text; nothing when it can be searched for. Compiles it.
    std::optional<TextFault> fault() const { return _kind->fault(); }

    /// The expression whose groups tell how a match is replaced; null for kinds that replace without, and for
    /// a faulty one.
    const UnicodeExpression *expression() const { return _kind->expression(); }

    class Line;

private:
    QString _findText;
    FindOptions _options;
    std::shared_ptr<const FindKind> _kind;
};

/// One line being searched for the pattern; the terms are those of FindKind.
class TDFindPattern::Line
{
public:
    /// All must outlive the object. `bytes` are the line's UTF-8 bytes where they are at hand.
    Line(const TDFindPattern &pattern, QStringView line, QByteArrayView bytes = {})
        : _kind(*pattern._kind), _line(line, bytes, _kind.effortFor(line.size()))
    {}

    /// The line's matches one after the other, then not found.
    TextRange nextMatch(TDError &error) { return _kind.nextMatch(_line, error); }

    /// The first match within the range of the line, whatever was found before.
    TextRange firstRange(TextRange searchRange, TDError &error)
    {
        return _kind.firstRange(_line, searchRange, error);
    }

    /// Why the line wasn't searched to its end; Found where nothing kept it from that.
    LineSearch limit() const { return _line.limit(); }

    /// Of a kind with an expression(): the groups of the match found last, the whole match first, as ranges
    /// of the line; to be asked for before anything else is searched on this thread.
    QList<TextRange> groups();

private:
    const FindKind &_kind;
    SearchedLine _line;
};

} // namespace tidemark
