#pragma once

#include "reading/FileToRead.h"

#include <QHashFunctions>

#include <optional>
#include <sys/types.h>
#include <unordered_map>

namespace tidemark {

/// Knows by their inodes the files that a search came to in folders' listings, so that most need not be asked
/// how many names they have. Takes a few bits a file where inodes lie close together. The search's own
/// thread.
class ListedInodes
{
public:
    /// The device of the files in an open folder; nothing where listings can't be relied on: of the file
    /// systems whose listings have each file's own inode, and whose dates are by the clock of this machine.
    std::optional<dev_t> deviceOfFolder(int descriptor);

    /// Notes one that the walk has come to; by which another name it was seen before.
    ListedInode add(dev_t device, quint64 inode);
    /// What was listed there was read, whether or not anything was found.
    void setRead(const ListedInode &file) { _bitsOf(file.device, file.inode).read |= _bitOf(file.inode); }
    bool isRead(const ListedInode &file)
    {
        return _bitsOf(file.device, file.inode).read & _bitOf(file.inode);
    }

private:
    /// Neighbouring inodes.
    struct Group
    {
        dev_t device = 0;
        quint64 number = 0;
        friend bool operator==(const Group &, const Group &) = default;
    };
    struct Hash
    {
        size_t operator()(const Group &group) const { return qHashMulti(0, group.device, group.number); }
    };
    struct Bits
    {
        quint64 listed = 0;
        quint64 read = 0;
    };
    static constexpr quint64 INODES_IN_GROUP = 64;

    static quint64 _bitOf(quint64 inode) { return quint64(1) << inode % INODES_IN_GROUP; }
    Bits &_bitsOf(dev_t device, quint64 inode);

    std::unordered_map<Group, Bits, Hash> _groups;
    dev_t _device = 0; ///< looked at last
    bool _isReliable = false;
};

} // namespace tidemark
