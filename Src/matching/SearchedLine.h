#pragma once

#include "matching/BoundedSearch.h"
#include "text/TextRange.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

namespace tidemark {

/// How a search within a line ended.
enum class LineSearch {
    Found,
    NotFound,
    TooLong, ///< the time for a line was spent
    TooMuchMemory,
    Failed, ///< anything else that the library reports
};

/// One line being searched, with what several searches within it share.
class SearchedLine
{
public:
    /// Both texts must outlive the object. `bytes` are the line's UTF-8 bytes where they are at hand.
    SearchedLine(QStringView text, QByteArrayView bytes, const SearchEffort &effort);

    QStringView text() const { return _text; }
    /// The whole line in UTF-8; made when first asked for.
    QByteArrayView bytes();
    SearchEffort &effort() { return _effort; }

    // For whoever searches stretches of the line. Line ends are not looked for: what is searched has the
    // length that is left when line-break characters are taken off both ends, but it is applied from the
    // first character on, so on a line that begins with such characters the last ones are left out.

    /// What is to be searched next; not found when the line is done.
    TextRange rest();
    /// Goes on at the position; a position beyond the end ends the search.
    void continueAt(qint64 position);
    void finish() { _rest = TextRange::notFound(); }

    // For whoever searches characters of the line as a whole.

    /// The line without its line end as valid UTF-8. Half a surrogate pair counts as U+FFFD.
    QByteArrayView characters();
    struct Progress
    {
        qsizetype position = 0; ///< in characters()
        bool isBehindEmptyMatch = false;
    };
    Progress &progress() { return _progress; }
    /// A range of characters() in UTF-16 units of the line.
    TextRange unitsOf(TextRange range);

    /// Why the line wasn't searched to its end; Found where nothing kept it from that.
    LineSearch limit() const { return _limit; }
    void setLimit(LineSearch limit) { _limit = limit; }

private:
    qint64 _unitOf(qint64 byte);

    QStringView _text;
    QByteArrayView _bytes; ///< null until they are needed
    QByteArray _ownBytes;
    SearchEffort _effort;

    TextRange _rest;
    bool _isBegun = false;

    QByteArrayView _characters; ///< null until they are needed
    QByteArray _ownCharacters;
    Progress _progress;
    // One position in both measures, close to which others are likely to be asked for.
    qint64 _knownByte = 0;
    qint64 _knownUnit = 0;
    LineSearch _limit = LineSearch::Found;
};

} // namespace tidemark
