#pragma once

#include "matching/TDFindResultItem.h"
#include "text/AsciiFinder.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace tidemark {

/// A file and those of its lines that may show.
struct FileWithLines
{
    std::shared_ptr<TDFindResultItem> file;
    FindResultItems lines;
};

/// For each of several files: nothing when all of it shows, otherwise those of its lines that do.
using ShownLines = std::vector<std::optional<FindResultItems>>;

/// Which results show while only some are to: those whose path, as far as it lies below a location, or whose
/// line holds a text, whatever the case of its letters. Immutable.
class ResultsFilter
{
public:
    /// The text isn't empty.
    ResultsFilter(const QString &text, const QList<FilePath> &locations);

    const QString &text() const { return _text; }

    /// All of a file shows for its path or for each of its lines. Very many lines are looked at by several
    /// threads.
    ShownLines shownLines(const QList<FileWithLines> &files) const;

private:
    struct Piece;
    static std::vector<Piece> _piecesOf(const QList<FileWithLines> &files);
    static std::optional<FindResultItems> _shownOf(std::span<const Piece> pieces);
    void _lookAt(Piece &piece) const;
    bool _isInPath(const FilePath &path) const;
    bool _isInLine(const TDFindResultItem &line) const;
    bool _isIn(QByteArrayView utf8) const;

    const QString _text;
    QList<QByteArray> _folders; ///< with a slash at the end, longer ones first
    std::optional<AsciiFinder> _finder;
    bool _hasFurtherCases = false; ///< a letter of it has a form beyond ASCII
};

} // namespace tidemark
