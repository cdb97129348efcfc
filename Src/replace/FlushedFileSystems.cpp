#include "replace/FlushedFileSystems.h"

#include "foundation/FileSystemCalls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace tidemark {

namespace {

/// The kernel's own file systems: flushing one of these ends on a disk or, where it is held in memory, has
/// nothing to do.
constexpr std::array<quint32, 15> KNOWN = {
    0xEF53,     // ext2 to ext4
    0x58465342, // XFS
    0x9123683E, // Btrfs
    0xF2F52010, // F2FS
    0xCA451A4E, // bcachefs
    0x2FC12FC1, // ZFS
    0x3153464A, // JFS
    0x3434,     // NILFS
    0x52654973, // ReiserFS
    0x2011BAB0, // exFAT
    0x4D44,     // FAT
    0x7366746E, // NTFS
    0x794C7630, // overlay
    0x01021994, // tmpfs
    0x858458F6, // ramfs
};

bool isFlushedAsAWhole(int folder)
{
    return std::find(KNOWN.begin(), KNOWN.end(), FileSystemCalls::current().fileSystemType(folder)) !=
           KNOWN.end();
}

} // namespace

int FlushedFileSystems::addFolder(const FilePath &folder)
{
    if (_folders.contains(folder))
        return 0;
    struct stat status;
    if (::stat(folder.cString(), &status) != 0)
        return errno;
    if (!_descriptors.contains(status.st_dev)) {
        Descriptor descriptor(
            FileSystemCalls::current().open(folder.cString(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0));
        if (!descriptor.isOpen())
            return errno;
        if (!isFlushedAsAWhole(descriptor.number()))
            return ENOTSUP;
        _descriptors.emplace(status.st_dev, std::move(descriptor));
    }
    _folders.insert(folder);
    return 0;
}

bool FlushedFileSystems::addFileSystemOf(const FilePath &path, dev_t device)
{
    return addFolder(path.deletingLastPathComponent()) == 0 && contains(device);
}

QList<int> FlushedFileSystems::descriptors() const
{
    QList<int> numbers;
    for (const auto &[device, descriptor] : _descriptors)
        numbers << descriptor.number();
    return numbers;
}

QList<quint64> FlushedFileSystems::devices() const
{
    QList<quint64> devices;
    for (const auto &[device, descriptor] : _descriptors)
        devices << device;
    return devices;
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
