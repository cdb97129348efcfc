#include "search/VKFileSystemCommon.h"

#include <filesystem>
#include <system_error>

namespace tidemark {

namespace {

/// Spelled as a resolved path is, so that only links make a difference.
std::filesystem::path normalized(const FilePath &path)
{
    std::error_code failure;
    const std::filesystem::path absolute =
        std::filesystem::absolute(path.bytes().toStdString(), failure).lexically_normal();
    return absolute.has_filename() || !absolute.has_relative_path() ? absolute : absolute.parent_path();
}

} // namespace

bool VKFileSystemCommon::pathIsSymbolicLink(const FilePath &path)
{
    if (path.isEmpty())
        return false;
    std::error_code failure;
    const std::filesystem::path spelled = normalized(path);
    const std::filesystem::path resolved = std::filesystem::canonical(path.bytes().toStdString(), failure);
    // A link to nowhere is one all the same.
    return failure ? std::filesystem::is_symlink(spelled, failure) : resolved != spelled;
}

bool VKFileSystemCommon::pathIsAlias(const FilePath &)
{
    return false;
}

} // namespace tidemark
