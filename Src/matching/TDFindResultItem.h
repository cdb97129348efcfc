#pragma once

#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "foundation/TDFileCommon.h"
#include "matching/FileMatches.h"
#include "matching/TDMatchLine.h"
#include "text/StyledText.h"

#include <QHashFunctions>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

namespace tidemark {
class TDFindResultItem;
}
// So that long lists grow without moving each of them.
Q_DECLARE_TYPEINFO(std::shared_ptr<tidemark::TDFindResultItem>, Q_RELOCATABLE_TYPE);

namespace tidemark {

using FindResultItems = QList<std::shared_ptr<TDFindResultItem>>;

/// A part of what was found in a large file, the rest of which is still searched. The file's node is handed
/// over with the first one; each further one is for whoever uses the node by then to add.
struct FoundPart
{
    enum class Kind {
        First,   ///< is in the node already, and here for what counts it
        More,    ///< comes behind those before
        Instead, ///< takes the place of all before: the file came to be searched anew, or ended in an error
    };

    std::shared_ptr<TDFindResultItem> file;
    Kind kind = Kind::First;
    FindResultItems children;           ///< below the file's node
    std::optional<FileMatches> matches; ///< none where the file ended in an error
};

/// Tells a node from every other, also from those that are gone, whose addresses come back. What is
/// remembered about nodes goes by it.
struct NodeIdentity
{
    quint64 file = 0; ///< of all files found since the program began, counted from 1
    quint32 leaf = 0; ///< 0 for the file itself; unlike a line's number it stays, and no two are the same

    friend bool operator==(const NodeIdentity &, const NodeIdentity &) = default;
    friend size_t qHash(const NodeIdentity &identity, size_t seed = 0)
    {
        return qHashMulti(seed, identity.file, identity.leaf);
    }
};

/// A node of the results tree: a file, or below it one of its match lines or the error that it ended in. Made
/// on the search thread and handed over as a whole; used by one thread at a time.
class TDFindResultItem
{
public:
    static std::shared_ptr<TDFindResultItem> initWithFile(const FilePath &path,
                                                          std::optional<FileDate> modificationDate,
                                                          const QString &findText, bool includesBOM);
    /// The parent isn't kept alive by its children.
    static std::shared_ptr<TDFindResultItem> initWithMatchLine(const std::shared_ptr<TDMatchLine> &matchLine,
                                                               TDFindResultItem *parent);
    /// One node for each line, all in one piece of memory that lives as long as one of them.
    static FindResultItems initWithMatchLines(const MatchLines &matchLines, TDFindResultItem *parent);
    static std::shared_ptr<TDFindResultItem> initWithError(const TDError &error, TDFindResultItem *parent);
    /// A file node whose one child tells the error.
    static std::shared_ptr<TDFindResultItem>
    initWithFailedFile(const FilePath &path, std::optional<FileDate> modificationDate, const TDError &error);

    /// True for every leaf, error nodes included.
    bool isMatchLine() const { return _matchLine != nullptr || _error; }

    TDMatchLine *matchLine() const { return _matchLine.get(); }
    const std::shared_ptr<TDMatchLine> &sharedMatchLine() const { return _matchLine; }
    TDFindResultItem *parent() const { return _parent; }
    /// A leaf's parent must be there.
    NodeIdentity identity() const;
    void setParent(TDFindResultItem *parent) { _parent = parent; }
    const TDError &error() const { return _error; }
    void setError(const TDError &error) { _error = error; }

    /// The nodes below a file node, in line order; empty for leaves.
    const FindResultItems &matchLines() const { return _file().matchLines; }
    const FindResultItems &children() const { return matchLines(); }
    /// Only on file nodes; so are the setters below.
    void setMatchLines(FindResultItems items);
    void setChildren(FindResultItems items) { setMatchLines(std::move(items)); }

    const FilePath &path() const { return _file().path; }
    void setPath(const FilePath &path) { _fileFields->path = path; }
    /// The file's date when it was searched or last saved.
    std::optional<FileDate> modificationDate() const { return _file().modificationDate; }
    void setModificationDate(std::optional<FileDate> date) { _fileFields->modificationDate = date; }
    const QString &findText() const { return _file().findText; }
    bool includesBOM() const { return _file().includesBOM; }
    void setIncludesBOM(bool includesBOM) { _fileFields->includesBOM = includesBOM; }
    /// In which the file was read, or couldn't be; not known where it couldn't be opened.
    SettledEncoding encoding() const { return _file().encoding; }
    void setEncoding(SettledEncoding encoding) { _fileFields->encoding = encoding; }
    /// Whether the search hands its lines over in parts, so that there may be more of them while it runs.
    bool comesInParts() const { return _file().comesInParts; }
    void setComesInParts() { _fileFields->comesInParts = true; }
    /// What there is to say about the file since the search, such as why it couldn't be rewritten; for
    /// people.
    const QString &remark() const { return _file().remark; }
    void setRemark(const QString &remark) { _fileFields->remark = remark; }
    /// All that was found in the file, whatever nodes are left; null on leaves and on files that failed.
    const FileMatches *matches() const { return _file().matches ? &*_file().matches : nullptr; }
    /// Their encoding is the file's.
    void setMatches(FileMatches matches);
    /// Of this file; the first one is there already.
    void add(FoundPart part);

    /// 0 for a match line; for a file the sum over matches(), counted anew at every call; nothing for errors
    /// and for files without match lines.
    std::optional<qint32> matchCount() const;

    /// The file name to sort by: "" for a match line, a null text for an error.
    QString filenameMatchLineSortKey() const;
    /// The folder of a file node, for people.
    QString displayPath() const;
    StyledText displayName() const;
    StyledText displayError() const;

    /// Where the node stands among its siblings; kept by whoever keeps the list.
    qsizetype position() const { return _position; }
    void setPosition(qsizetype position) { _position = qint32(position); }

private:
    /// What only file nodes have, apart so that the many match-line nodes stay small.
    struct FileFields
    {
        quint64 number = 0; ///< of its identity
        FilePath path;
        std::optional<FileDate> modificationDate;
        QString findText;
        QString remark;
        FindResultItems matchLines;
        std::optional<FileMatches> matches;
        SettledEncoding encoding;
        bool includesBOM = false;
        bool comesInParts = false;
    };
    const FileFields &_file() const;

    std::unique_ptr<FileFields> _fileFields;
    std::shared_ptr<TDMatchLine> _matchLine;
    TDError _error;
    TDFindResultItem *_parent = nullptr;
    qint32 _position = 0;
    quint32 _leaf = 0; ///< of its identity
};

} // namespace tidemark
