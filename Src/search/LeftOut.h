#pragma once

#include "foundation/FilePath.h"

#include <QByteArray>
#include <QList>

#include <array>
#include <numeric>

namespace tidemark {

/// Why an entry of a folder isn't searched.
enum class LeftOutReason : quint8 {
    None, ///< it is
    Kind,
    Pattern,
    IgnoreFile,
    Hidden,
    Link,
    Special, ///< a device, a pipe or a socket
    Size,
    OwnBackup,
    FoundBefore, ///< the same file by another path
    Unreadable,  ///< it is, with an error for its outcome; so is a folder
};
inline constexpr size_t LEFT_OUT_REASONS = size_t(LeftOutReason::Unreadable) + 1;

/// What a search left out. A folder that is left out counts once, and what is below it not at all.
struct LeftOut
{
    /// How much is due to a pattern or an ignore file.
    struct Share
    {
        QByteArray name; ///< of a pattern its text, of an ignore file its path
        quint64 count = 0;
        friend bool operator==(const Share &, const Share &) = default;
    };
    struct BrokenIgnoreFile
    {
        FilePath path;
        int errorNumber = 0; ///< of reading it; 0: some patterns match nothing
        QList<QByteArray> faultyPatterns;
    };

    quint64 &operator[](LeftOutReason reason) { return byReason[size_t(reason)]; }
    quint64 operator[](LeftOutReason reason) const { return byReason[size_t(reason)]; }
    quint64 total() const { return std::accumulate(byReason.begin(), byReason.end(), quint64(0)); }

    std::array<quint64, LEFT_OUT_REASONS> byReason = {};
    QList<Share> byPattern; ///< those of the settings that left something out
    QList<Share> byIgnoreFile;
    QList<BrokenIgnoreFile> brokenIgnoreFiles;
};

} // namespace tidemark
