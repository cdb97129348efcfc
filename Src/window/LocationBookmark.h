#pragma once

#include "search/TDSearchLocation.h"

#include <QVariantMap>

#include <optional>

namespace tidemark {

/// How bookmarks are made and resolved; the numbers are those of the stored format's home platform.
enum class BookmarkCreation { Plain = 0, WithSecurityScope = 2048 };
enum class BookmarkResolution { Plain = 0, WithSecurityScope = 1024 };

BookmarkCreation bookmarkCreation(bool supportsSecurityScope);
BookmarkResolution bookmarkResolution(bool supportsSecurityScope);

/// What finds a file again later: its URL as text. Nothing when the URL isn't that of a local file. The scope
/// changes nothing where the system has none.
std::optional<QByteArray> bookmarkData(const QUrl &url, BookmarkCreation creation);
/// Nothing when the item no longer exists.
std::optional<QUrl> resolvedBookmark(const QByteArray &bookmark, BookmarkResolution resolution);

/// A location as it is stored in the settings, and back; nothing when its bookmark can't be made or resolved.
std::optional<QVariantMap> storedLocation(const TDSearchLocation &location, BookmarkCreation creation);
std::optional<TDSearchLocation> locationFromStored(const QVariantMap &stored, BookmarkResolution resolution);

} // namespace tidemark
