#include "session/LocationBookmark.h"

#include <sys/stat.h>

namespace tidemark {

namespace {

const QString URL_KEY = QStringLiteral("url");
const QString IS_FOLDER_KEY = QStringLiteral("isFolder");
const QString INCLUDE_SUB_FOLDERS_KEY = QStringLiteral("includeSubFolders");
const QString FILE_TYPES_KEY = QStringLiteral("fileTypes");

bool itemExists(const FilePath &path)
{
    struct stat status = {};
    return !path.isEmpty() && lstat(path.cString(), &status) == 0;
}

} // namespace

std::optional<QByteArray> bookmarkData(const QUrl &url)
{
    if (!url.isLocalFile())
        return std::nullopt;
    return url.toEncoded();
}

std::optional<QUrl> resolvedBookmark(const QByteArray &bookmark)
{
    const QUrl url = QUrl::fromEncoded(bookmark);
    if (!url.isLocalFile() || !itemExists(FilePath::fromUrl(url)))
        return std::nullopt;
    return url;
}

std::optional<QVariantMap> storedLocation(const TDSearchLocation &location)
{
    const std::optional<QByteArray> bookmark = bookmarkData(location.path().toUrl());
    if (!bookmark)
        return std::nullopt;
    QVariantMap stored = {{URL_KEY, QString::fromLatin1(*bookmark)},
                          {IS_FOLDER_KEY, location.isFolder},
                          {INCLUDE_SUB_FOLDERS_KEY, location.includeSubFolders}};
    if (location.fileTypes.isValid())
        stored[FILE_TYPES_KEY] = location.fileTypes;
    return stored;
}

std::optional<TDSearchLocation> locationFromStored(const QVariantMap &stored)
{
    const std::optional<QUrl> url = resolvedBookmark(stored.value(URL_KEY).toByteArray());
    if (!url)
        return std::nullopt;
    TDSearchLocation location;
    location.url = *url;
    location.isFolder = stored.value(IS_FOLDER_KEY).toBool();
    location.includeSubFolders = stored.value(INCLUDE_SUB_FOLDERS_KEY).toBool();
    location.fileTypes = stored.value(FILE_TYPES_KEY);
    return location;
}

} // namespace tidemark
