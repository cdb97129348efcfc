#include "replace/OpenRegularFile.h"

#include "foundation/FileSystemCalls.h"
#include "replace/FileState.h"

#include <cerrno>

namespace tidemark {

OpenRegularFile::OpenRegularFile(const FilePath &path, int access)
    : _descriptor(
          FileSystemCalls::current().open(path.cString(), access | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0))
{
    _errorNumber = isOpen() ? 0 : errno;
    if (isOpen() && (::fstat(descriptor(), &_status) != 0 || !S_ISREG(_status.st_mode))) {
        (void)close();
        _errorNumber = ESTALE;
    }
}

bool OpenRegularFile::isNotThere() const
{
    switch (_errorNumber) {
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
    case ESTALE:
    case ENXIO:
    case EISDIR:
        return true;
    default:
        return false;
    }
}

std::optional<ContentDigest> OpenRegularFile::digest() const
{
    return isOpen() ? digestOfDescriptor(descriptor(), _status.st_size) : std::nullopt;
}

bool OpenRegularFile::flush() const
{
    return FileSystemCalls::current().sync(descriptor()) == 0;
}

} // namespace tidemark
