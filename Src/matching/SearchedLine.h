#pragma once

#include "foundation/TextRange.h"
#include "matching/BoundedSearch.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

namespace tidemark {

/// One line being searched, with what several searches within it share. Line ends are not looked for: what
/// is searched has the length that is left when line-break characters are taken off both ends, but it is
/// applied from the first character on, so on a line that begins with such characters the last ones are left
/// out.
class SearchedLine
{
public:
    /// Both must outlive the object. `bytes` are the line's UTF-8 bytes where they are at hand.
    explicit SearchedLine(QStringView text, QByteArrayView bytes = {});

    QStringView text() const { return _text; }
    /// Made when first asked for.
    QByteArrayView bytes();
    SearchEffort &effort() { return _effort; }

    /// What is to be searched next; not found when the line is done.
    TextRange rest() const { return _rest; }
    /// Goes on at the position; a position beyond the end ends the search.
    void continueAt(qint64 position);
    void finish() { _rest = TextRange::notFound(); }

private:
    QStringView _text;
    QByteArrayView _bytes; ///< null until they are needed
    QByteArray _ownBytes;
    TextRange _rest;
    SearchEffort _effort;
};

} // namespace tidemark
