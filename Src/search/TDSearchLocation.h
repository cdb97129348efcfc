#pragma once

#include "foundation/FilePath.h"

#include <QList>
#include <QUrl>
#include <QVariant>

namespace tidemark {

/// One entry of a search window's list of files and folders.
struct TDSearchLocation
{
    QUrl url;
    bool isFolder = false;
    bool includeSubFolders = false;
    /// Kept and stored for the user; the search itself goes by the application-wide kinds.
    QVariant fileTypes;

    /// The preferred way to set the location: a folder, if one exists at the URL, starts with its subfolders
    /// included; everything else with both flags off.
    void setURL(const QUrl &newUrl);

    /// Of the URL, without slashes at the end.
    FilePath path() const;

    /// The same path up to canonical equivalence, whatever the flags.
    bool isEqual(const TDSearchLocation &other) const;
    /// The same for equal locations, to find one among many.
    QByteArray comparisonKey() const;
    /// True when the location is already covered by one of the given ones. For a folder with subfolders this
    /// is a plain test of the path's beginning: /a/bc counts as inside /a/b.
    bool isInScopeOfLocations(const QList<TDSearchLocation> &locations) const;

    /// The four fields under "url", "isFolder", "includeSubFolders", "fileTypes"; what is missing stays
    /// empty.
    QByteArray archived() const;
    static TDSearchLocation unarchived(const QByteArray &archive);
};

/// True when one of the locations is this very file, and not a folder that holds it.
bool isFileAmong(const QList<TDSearchLocation> &locations, const FilePath &path);

/// True when some element compares equal to the text.
bool containedInArray(const QString &text, const QStringList &array);

} // namespace tidemark
