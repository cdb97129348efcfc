#pragma once

#include "foundation/Descriptor.h"
#include "foundation/FilePath.h"

#include <QList>
#include <QSet>

#include <map>
#include <sys/types.h>

namespace tidemark {

/// The file systems that a run writes to, each by a descriptor that is open from before the first write to
/// the end, so that no failure of the disk in between is missed. One thread at a time.
class FlushedFileSystems
{
public:
    /// Adds the file system of a folder; 0, or errno: ENOTSUP for one of which nobody knows whether flushing
    /// it as a whole reaches the disk, as with those that a program or another machine provides.
    int addFolder(const FilePath &folder);
    /// Adds the file system of a file by its folder. Whether the file is on it: false when the folder's can't
    /// be added, or `device`, which the file is on, is another one.
    bool addFileSystemOf(const FilePath &path, dev_t device);
    /// Whether the file system with that number is among them: a file can be one of its own.
    bool contains(dev_t device) const { return _descriptors.contains(device); }
    QList<quint64> devices() const;
    /// One for each file system; they stay open as long as the object lives.
    QList<int> descriptors() const;

private:
    QSet<FilePath> _folders; ///< each is looked at once, unless that failed
    std::map<dev_t, Descriptor> _descriptors;
};

/// Brings everything that was written to these file systems to the disk; 0, or the first errno. Any thread.
int flushFileSystems(const QList<int> &descriptors);

} // namespace tidemark
