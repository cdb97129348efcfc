#include "search/ListedInodes.h"

#include "foundation/FileSystemCalls.h"

#include <algorithm>
#include <array>
#include <sys/stat.h>
#ifdef __linux__
#include <linux/magic.h>
#endif

namespace tidemark {

namespace {

bool hasReliableListings(int descriptor)
{
#ifdef __linux__
    constexpr std::array<quint32, 5> RELIABLE = {EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC,
                                                 F2FS_SUPER_MAGIC, TMPFS_MAGIC};
    const quint32 type = FileSystemCalls::current().fileSystemType(descriptor);
    return std::find(RELIABLE.begin(), RELIABLE.end(), type) != RELIABLE.end();
#else
    (void)descriptor;
    return false;
#endif
}

} // namespace

std::optional<dev_t> ListedInodes::deviceOfFolder(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return {};
    if (_device != status.st_dev) {
        _device = status.st_dev;
        _isReliable = hasReliableListings(descriptor);
    }
    return _isReliable ? std::optional(_device) : std::nullopt;
}

ListedInode ListedInodes::add(dev_t device, quint64 inode)
{
    using OtherPath = ListedInode::OtherPath;
    Bits &bits = _bitsOf(device, inode);
    const quint64 bit = _bitOf(inode);
    ListedInode file{device, inode};
    if ((bits.listed & bit) != 0)
        file.otherPath = (bits.read & bit) != 0 ? OtherPath::Read : OtherPath::Listed;
    bits.listed |= bit;
    return file;
}

ListedInodes::Bits &ListedInodes::_bitsOf(dev_t device, quint64 inode)
{
    return _groups[{device, inode / INODES_IN_GROUP}];
}

} // namespace tidemark
