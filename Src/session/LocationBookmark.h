#pragma once

#include "search/TDSearchLocation.h"

#include <QVariantMap>

#include <optional>

namespace tidemark {

/// What finds a file again later: its URL as text. Nothing when the URL isn't that of a local file. Programs
/// need no leave to open a file that a person chose before, so a bookmark has no options and there is no
/// question which version of the system offers them.
std::optional<QByteArray> bookmarkData(const QUrl &url);
/// Nothing when the item no longer exists.
std::optional<QUrl> resolvedBookmark(const QByteArray &bookmark);

/// A location as it is stored in the settings, and back; nothing when its bookmark can't be made or resolved.
std::optional<QVariantMap> storedLocation(const TDSearchLocation &location);
std::optional<TDSearchLocation> locationFromStored(const QVariantMap &stored);

} // namespace tidemark
