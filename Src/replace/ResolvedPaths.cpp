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
    const FilePath result((QByteArray(resolved)));
    std::free(resolved);
    return result;
}

bool isFileName(const QByteArray &name)
{
    return !name.isEmpty() && name != "." && name != ".." && !name.contains('/');
}

} // namespace

FilePath ResolvedPaths::resolving(const FilePath &path)
{
    const FilePath folder = path.deletingLastPathComponent();
    const QByteArray name = path.lastPathComponent();
    if (folder.isEmpty() || path.bytes().endsWith('/') || !isFileName(name))
        return realPath(path);
    auto place = _folders.find(folder);
    if (place == _folders.end())
        place = _folders.insert(folder, realPath(folder));
    const FilePath resolved = place->appendingPathComponent(name);
    char target = 0;
    const bool isPlain = ::readlink(resolved.cString(), &target, 1) < 0 && errno == EINVAL;
    return isPlain ? resolved : realPath(path);
}

} // namespace tidemark
