#pragma once

#include "matching/TDFindResultItem.h"
#include "text/AsciiFinder.h"

#include <QList>
#include <QString>

#include <optional>

namespace tidemark {

/// Which results show while only some are to: those whose path, as far as it lies below a location, or whose
/// line holds a text, whatever the case of its letters. Immutable.
class ResultsFilter
{
public:
    /// The text isn't empty.
    ResultsFilter(const QString &text, const QList<FilePath> &locations);

    const QString &text() const { return _text; }

    /// Nothing when the whole file shows, for its path or for each of its lines; otherwise those of the given
    /// lines that do. Callable from several threads.
    std::optional<FindResultItems> shownLines(const TDFindResultItem &file,
                                              const FindResultItems &lines) const;

private:
    bool _isInPath(const FilePath &path) const;
    bool _isInLine(const TDFindResultItem &line) const;
    bool _isIn(QByteArrayView utf8) const;

    const QString _text;
    QList<QByteArray> _folders; ///< with a slash at the end, longer ones first
    std::optional<AsciiFinder> _finder;
    bool _hasFurtherCases = false; ///< a letter of it has a form beyond ASCII
};

} // namespace tidemark
