// Locations as they are stored. An input is an archive up to a line feed, and a bookmark.

#include "session/LocationBookmark.h"

#include "Fuzzing.h"

namespace tidemark::fuzz {

namespace {

void checkArchive(const QByteArray &archive)
{
    const TDSearchLocation location = TDSearchLocation::unarchived(archive);
    const TDSearchLocation again = TDSearchLocation::unarchived(location.archived());
    require(again.path() == location.path() && again.isFolder == location.isFolder &&
                again.includeSubFolders == location.includeSubFolders &&
                again.fileTypes == location.fileTypes,
            "a location survives being archived");
    require(location.isEqual(again), "a location is equal to itself");
    const TimeLimit limit;
    (void)location.isInScopeOfLocations({location, again});
    limit.check("scopes are compared soon", 0.1);
}

void checkBookmark(const QByteArray &bookmark)
{
    QVariantMap stored = {{QStringLiteral("url"), bookmark}, {QStringLiteral("fileTypes"), bookmark}};
    const auto location = locationFromStored(stored);
    if (!location)
        return;
    require(location->url.isLocalFile(), "a resolved bookmark is a file here");
    const auto storedAgain = storedLocation(*location);
    require(storedAgain.has_value(), "a resolved bookmark can be stored");
    const auto again = locationFromStored(*storedAgain);
    require(again && again->isEqual(*location), "a stored location is found again");
}

/// Every path can be stored and found again, whatever bytes it is of.
void checkPath(QByteArray name)
{
    name.replace('\0', 'x');
    const FilePath path = FilePath("/" + name);
    require(FilePath::fromUrl(path.toUrl()) == path, "a path survives being a URL");
    TDSearchLocation location;
    location.setURL(path.toUrl());
    checkArchive(location.archived());
    require(FilePath::fromUrl(TDSearchLocation::unarchived(location.archived()).url) == path,
            "a path survives being archived");
}

} // namespace

void run(Input &input)
{
    checkArchive(input.line());
    const QByteArray bookmark = input.rest();
    checkBookmark(bookmark);
    checkBookmark("file://" + folder().bytes() + "/" + bookmark);
    checkPath(bookmark);
}

} // namespace tidemark::fuzz
