#include "reading/FileToRead.h"

#include "foundation/PatientOpen.h"

#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark {

Descriptor FileToRead::open() const
{
    return Descriptor(openPatiently([this] { return _open(); }));
}

int FileToRead::_open() const
{
    constexpr int FLAGS = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    if (openDescriptor >= 0) {
        // Both share their position.
        const int duplicate = ::fcntl(openDescriptor, F_DUPFD_CLOEXEC, 0);
        if (duplicate >= 0)
            (void)::lseek(duplicate, 0, SEEK_SET);
        return duplicate;
    }
    if (folderDescriptor >= 0)
        // It was no link when it was found.
        return ::openat(folderDescriptor, path.cString() + nameInFolder, FLAGS | O_NOFOLLOW);
    // Opening a device may already set something off.
    struct stat status = {};
    if (::stat(path.cString(), &status) == 0 && !isSafeToRead(status)) {
        errno = ENXIO;
        return -1;
    }
    return ::open(path.cString(), FLAGS);
}

bool isSafeToRead(const struct stat &status)
{
    return S_ISREG(status.st_mode) || S_ISDIR(status.st_mode);
}

qint64 bytesToRead(const struct stat &status)
{
    return S_ISREG(status.st_mode) && status.st_size > 0 ? status.st_size
                                                         : std::numeric_limits<qint64>::max();
}

} // namespace tidemark
