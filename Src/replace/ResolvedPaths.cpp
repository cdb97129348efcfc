#include "replace/ResolvedPaths.h"

#include <cerrno>
#include <cstdlib>
#include <unistd.h>

namespace tidemark {

namespace {

FilePath realPath(const FilePath &path)
{
    char *resolved = ::realpath(path.cString(), nullptr);
    if (resolved == nullptr)
        return path;
    FilePath result((QByteArray(resolved)));
    std::free(resolved);
    return result;
}

/// Whether a link at the end is the only thing left to be resolved once the folder is.
bool endsWithName(const FilePath &path)
{
    const QByteArray name = path.lastPathComponent();
    return !path.bytes().endsWith('/') && !name.isEmpty() && name != "." && name != "..";
}

bool isNoLink(const FilePath &path)
{
    char target = 0;
    return ::readlink(path.cString(), &target, 1) < 0 && errno == EINVAL;
}

} // namespace

FilePath ResolvedPaths::resolving(const FilePath &path)
{
    const FilePath folder = path.deletingLastPathComponent();
    if (folder.isEmpty() || !endsWithName(path))
        return realPath(path);
    const FilePath resolved = _resolvingFolder(folder).appendingPathComponent(path.lastPathComponent());
    return isNoLink(resolved) ? resolved : realPath(path);
}

FilePath ResolvedPaths::_resolvingFolder(const FilePath &folder)
{
    if (const auto place = _folders.constFind(folder); place != _folders.cend())
        return *place;
    FilePath resolved = resolving(folder);
    _folders.insert(folder, resolved);
    return resolved;
}

} // namespace tidemark
