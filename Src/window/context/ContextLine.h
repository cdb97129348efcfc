#pragma once

#include "session/ContextMatches.h"

#include <QString>

#include <vector>

namespace tidemark {

/// A line of a file as the context shows it: tabs as blanks, control characters as bullets, replacements
/// behind their matches, and of a long line only a part. Positions are those in the line, in UTF-16 units,
/// unless they are said to be in what is shown.
class ContextLine
{
public:
    /// Of a longer line so much is shown, around `center`.
    static constexpr qsizetype MOST_UNITS = 2000;

    struct Marked
    {
        TextRange shown; ///< an empty match is between two characters
        bool isHighlighted = false;
        bool isStruck = false;
        bool isNew = false; ///< was put in, or would be
    };

    ContextLine(const QString &line, bool isWhole, const QList<ContextMatch> &matches, qsizetype center);

    const QString &shown() const { return _shown; }
    const QList<Marked> &marked() const { return _marked; }
    /// The nearest one that shows.
    qsizetype shownAt(qsizetype position) const;
    qsizetype positionAt(qsizetype shown) const;
    /// The first and the last position that show.
    qsizetype first() const { return _first; }
    qsizetype last() const { return _first + qsizetype(_places.size()) - 1; }

private:
    void _append(QStringView line, qsizetype position);
    void _mark(const ContextMatch &match);
    void _insert(const QString &replacement);

    QString _shown;
    std::vector<qsizetype> _places; ///< where each position from the first one on shows
    qsizetype _first = 0;
    QList<Marked> _marked;
};

} // namespace tidemark
