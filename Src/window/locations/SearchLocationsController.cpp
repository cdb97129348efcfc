#include "window/locations/SearchLocationsController.h"

#include "search/VKFileSystemCommon.h"
#include "session/MyDocument.h"

#include <algorithm>

namespace tidemark {

bool isAliasOrSymbolicLink(const FilePath &path)
{
    return VKFileSystemCommon::pathIsAlias(path) || VKFileSystemCommon::pathIsSymbolicLink(path);
}

SearchLocationsController::SearchLocationsController(MyDocument &document, QObject *parent)
    : QObject(parent), _document(document)
{}

void SearchLocationsController::addSearchLocationToArrayController(const QUrl &url)
{
    if (_isReadOnly)
        return;
    TDSearchLocation location;
    location.url = url;
    QList<TDSearchLocation> locations = _document.searchLocations();
    const bool isKnown =
        std::any_of(locations.begin(), locations.end(),
                    [&location](const TDSearchLocation &known) { return known.isEqual(location); });
    if (isKnown || isAliasOrSymbolicLink(location.path()))
        return;
    location.setURL(url);
    locations << location;
    _document.setSearchLocations(locations);
}

void SearchLocationsController::addSearchLocations(const QList<QUrl> &urls)
{
    for (const QUrl &url : urls)
        addSearchLocationToArrayController(url);
}

void SearchLocationsController::dropFiles(const QList<FilePath> &paths)
{
    if (!_acceptsDrops)
        return;
    for (const FilePath &path : paths)
        addSearchLocationToArrayController(path.toUrl());
}

bool SearchLocationsController::isFileInSearchLocationsForPath(const FilePath &path) const
{
    return isFileAmong(_document.searchLocations(), path);
}

} // namespace tidemark
