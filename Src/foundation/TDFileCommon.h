#pragma once

#include "foundation/FilePath.h"

#include <compare>
#include <optional>

struct stat;

namespace tidemark {

/// A file's modification date as the file system gives it: nanoseconds since 1970, never rounded.
struct FileDate
{
    qint64 nanoseconds = 0;

    static FileDate fromStatus(const struct stat &status);
    /// When anything of the file changed last, its other date included.
    static FileDate ofStatusChange(const struct stat &status);
    static FileDate now();
    friend constexpr auto operator<=>(const FileDate &, const FileDate &) = default;
};

class TDFileCommon
{
public:
    /// Nothing when it can't be read. For a link it is the date of what the link leads to, as that is what is
    /// searched and rewritten.
    static std::optional<FileDate> fileModificationDate(const FilePath &path);
};

} // namespace tidemark
