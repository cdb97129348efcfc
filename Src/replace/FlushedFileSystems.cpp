#include "replace/FlushedFileSystems.h"

#include "foundation/FileSystemCalls.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace tidemark {

FlushedFileSystems::~FlushedFileSystems()
{
    for (const int descriptor : std::as_const(_descriptors))
        (void)FileSystemCalls::current().close(descriptor);
}

int FlushedFileSystems::addFolder(const FilePath &folder)
{
    if (_folders.contains(folder))
        return 0;
    struct stat status;
    if (::stat(folder.cString(), &status) != 0)
        return errno;
    if (!_descriptors.contains(status.st_dev)) {
        const int descriptor =
            FileSystemCalls::current().open(folder.cString(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
        if (descriptor < 0)
            return errno;
        _descriptors.insert(status.st_dev, descriptor);
    }
    _folders.insert(folder);
    return 0;
}

int flushFileSystems(const QList<int> &descriptors)
{
    int error = 0;
    for (const int descriptor : descriptors) {
        if (FileSystemCalls::current().syncFileSystem(descriptor) != 0 && error == 0)
            error = errno;
    }
    return error;
}

} // namespace tidemark
