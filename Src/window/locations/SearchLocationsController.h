#pragma once

#include "foundation/FilePath.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QUrl>

#include <optional>

namespace tidemark {

class MyDocument;

/// Adds to a document's list of files and folders to search.
class SearchLocationsController : public QObject
{
    Q_OBJECT

public:
    /// The document must outlive the object.
    explicit SearchLocationsController(MyDocument &document, QObject *parent = nullptr);

    /// At the end of the list; a folder with its subfolders. What is in the list already, aliases and links
    /// are refused silently.
    void addSearchLocationToArrayController(const QUrl &url);
    /// Those that were chosen in a panel, in their order.
    void addSearchLocations(const QList<QUrl> &urls);
    /// Appended wherever they were dropped; nothing while a search runs.
    void dropFiles(const QList<FilePath> &paths);

    /// True only for a location that is itself a file, with exactly this path.
    bool isFileInSearchLocationsForPath(const FilePath &path) const;

    bool acceptsDrops() const { return _acceptsDrops; }
    void setAcceptsDrops(bool accepts) { _acceptsDrops = accepts; }
    /// Nothing is added by any way, also not from a panel that was opened before.
    void setReadOnly(bool readOnly) { _isReadOnly = readOnly; }

private:
    MyDocument &_document;
    mutable std::optional<QSet<FilePath>> _namedFiles; ///< locations that are files, once asked for
    bool _acceptsDrops = true;
    bool _isReadOnly = false;
};

/// What a search can't be given: an alias, or a path that goes through a symbolic link.
bool isAliasOrSymbolicLink(const FilePath &path);

} // namespace tidemark
