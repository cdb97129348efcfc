#include "reading/FileToRead.h"

#include "foundation/PatientOpen.h"

#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <linux/openat2.h>
#include <sys/syscall.h>
#endif

namespace tidemark {

namespace {

constexpr int READ_FLAGS = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

/// -1 and errno also for what lies on another file system than the folder, or is mounted there.
int openWithoutMounts(int folderDescriptor, const char *name)
{
#ifdef SYS_openat2
    open_how how = {};
    how.flags = READ_FLAGS | O_NOFOLLOW;
    how.resolve = RESOLVE_NO_XDEV;
    return int(::syscall(SYS_openat2, folderDescriptor, name, &how, sizeof how));
#else
    (void)folderDescriptor;
    (void)name;
    errno = ENOSYS;
    return -1;
#endif
}

} // namespace

Descriptor FileToRead::open() const
{
    return Descriptor(openPatiently([this] { return _open(); }));
}

int FileToRead::_open() const
{
    if (openDescriptor >= 0) {
        // Both share their position.
        const int duplicate = ::fcntl(openDescriptor, F_DUPFD_CLOEXEC, 0);
        if (duplicate >= 0)
            (void)::lseek(duplicate, 0, SEEK_SET);
        return duplicate;
    }
    if (folderDescriptor >= 0)
        // It was no link when it was found.
        return ::openat(folderDescriptor, path.cString() + nameInFolder, READ_FLAGS | O_NOFOLLOW);
    // Opening a device may already set something off.
    struct stat status = {};
    if (::stat(path.cString(), &status) == 0 && !isSafeToRead(status)) {
        errno = ENXIO;
        return -1;
    }
    return ::open(path.cString(), READ_FLAGS);
}

Descriptor FileToRead::openListed() const
{
    return Descriptor(
        openPatiently([this] { return openWithoutMounts(folderDescriptor, path.cString() + nameInFolder); }));
}

bool FileToRead::canOpenListed()
{
    // Older systems don't know the call, and some containers forbid it.
    static const bool isAble = Descriptor(openWithoutMounts(AT_FDCWD, ".")).isOpen();
    return isAble;
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
