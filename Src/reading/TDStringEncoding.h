#pragma once

#include "text/TextEncoding.h"

#include <vector>

namespace tidemark {

/// The property by which the catalogue is sorted and shown.
inline const QString TD_KEY_USED_FOR_SORTING_ENCODINGS = QStringLiteral("localizedName");

/// A text encoding as a person chooses it. Immutable; everything here may be called from any thread.
class TDStringEncoding
{
public:
    /// Carries the catalogue; made on first use, in the language of that moment, and never destroyed before
    /// the process ends.
    static const TDStringEncoding &sharedStringEncoder();
    static const std::vector<TDStringEncoding> &availableEncodings();
    /// The catalogue's entry for the user's default, null when there is none.
    static const TDStringEncoding *defaultEncoding();
    /// What to open searched files with: TD_FILE_COMMON_UNKNOWN_ENCODING to detect it for each, otherwise the
    /// default encoding, 0 when there is none.
    static StringEncoding userDefaultsEncoding();

    explicit TDStringEncoding(StringEncoding stringEncodingId);

    StringEncoding stringEncodingId() const { return _stringEncodingId; }
    const QString &localizedName() const { return _localizedName; }
    /// Sorted by localized name, without regard to case. Empty except on the shared instance.
    const std::vector<TDStringEncoding> &encodingsOfSystem() const { return _encodingsOfSystem; }

private:
    TDStringEncoding() = default;

    StringEncoding _stringEncodingId = 0;
    QString _localizedName;
    std::vector<TDStringEncoding> _encodingsOfSystem;
};

} // namespace tidemark
