#include "window/locations/SearchLocationsController.h"

#include "search/VKFileSystemCommon.h"
#include "session/MyDocument.h"

#include <utility>

namespace tidemark {

bool isAliasOrSymbolicLink(const FilePath &path)
{
    return VKFileSystemCommon::pathIsAlias(path) || VKFileSystemCommon::pathIsSymbolicLink(path);
}

SearchLocationsController::SearchLocationsController(MyDocument &document, QObject *parent)
    : QObject(parent), _document(document)
{
    connect(&_document, &MyDocument::searchLocationsChanged, this, [this] { _namedFiles.reset(); });
}

void SearchLocationsController::addSearchLocationToArrayController(const QUrl &url)
{
    addSearchLocations({url});
}

void SearchLocationsController::addSearchLocations(const QList<QUrl> &urls)
{
    if (_isReadOnly)
        return;
    QList<TDSearchLocation> locations = _document.searchLocations();
    QSet<QByteArray> known;
    for (const TDSearchLocation &location : std::as_const(locations))
        known.insert(location.comparisonKey());
    const qsizetype countBefore = locations.size();
    for (const QUrl &url : urls) {
        TDSearchLocation location;
        location.url = url;
        const QByteArray key = location.comparisonKey();
        if (known.contains(key) || isAliasOrSymbolicLink(location.path()))
            continue;
        known.insert(key);
        location.setURL(url);
        locations << location;
    }
    if (locations.size() > countBefore)
        _document.setSearchLocations(locations);
}

void SearchLocationsController::dropFiles(const QList<FilePath> &paths)
{
    if (!_acceptsDrops)
        return;
    QList<QUrl> urls;
    for (const FilePath &path : paths)
        urls << path.toUrl();
    addSearchLocations(urls);
}

bool SearchLocationsController::isFileInSearchLocationsForPath(const FilePath &path) const
{
    if (!_namedFiles) {
        _namedFiles.emplace();
        for (const TDSearchLocation &location : _document.searchLocations()) {
            if (!location.isFolder)
                _namedFiles->insert(location.path());
        }
    }
    return _namedFiles->contains(path);
}

} // namespace tidemark
