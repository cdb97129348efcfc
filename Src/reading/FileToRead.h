#pragma once

#include "foundation/Descriptor.h"
#include "foundation/FilePath.h"

#include <QByteArrayView>

#include <optional>
#include <sys/types.h>

struct stat;

namespace tidemark {

struct FileToRead;

/// Is asked about a file once it is open whether to read it.
class FileGate
{
public:
    virtual ~FileGate() = default;
    /// On the thread that is about to read.
    virtual bool admits(const FileToRead &file, const struct stat &status) = 0;
    /// What was listed couldn't be opened; on the same thread. Its place may be taken by something else,
    /// which is asked about then.
    virtual void didNotOpen(const FileToRead &file) = 0;
};

/// What the listing of a folder tells of a regular file in it, where it can be relied on. One that takes its
/// place before it is opened is taken for it.
struct ListedInode
{
    /// Whether the walk came to the same file before, by another name.
    enum class OtherPath {
        None,
        Listed, ///< what became of it isn't known yet
        Read,
    };

    dev_t device = 0;
    quint64 inode = 0;
    OtherPath otherPath = OtherPath::None;
};

/// A file by its path and, where the folder is open already, by its name in it, which spares the look-up of
/// the whole path and reaches files whose path is longer than the system takes.
struct FileToRead
{
    FilePath path;
    int folderDescriptor = -1;   ///< -1: none; not owned
    qsizetype nameInFolder = -1; ///< where in the path its name in that folder begins
    int openDescriptor = -1;     ///< of the file itself, where it is open already; -1: it isn't; not owned
    /// All that is in the file, where somebody has read it already; must stay as long as the reader.
    std::optional<QByteArrayView> content = {};
    FileGate *gate = nullptr; ///< null: it is read; not owned
    quint64 number = 0;       ///< for the gate
    std::optional<ListedInode> listed = {};
    bool asksStatusFirst = false; ///< also where the listing told what there is to know

    /// Open for reading from the beginning on, or none and errno, which is ENXIO for what is neither a file
    /// nor a folder. Never waits for somebody to write to a pipe, but a while for descriptors when too many
    /// are open. A file in a folder that has been replaced since it was found may be open as something else.
    Descriptor open() const;

    /// Whether it may be read before it is asked for its status, which small files without a match then never
    /// are.
    bool isReadUnasked() const
    {
        return listed && listed->otherPath == ListedInode::OtherPath::None && !asksStatusFirst;
    }
    /// What was listed in its folder, unless something else is mounted over it. None, with errno, also where
    /// canOpenListed() is false.
    Descriptor openListed() const;
    /// Whether the system is able to.
    static bool canOpenListed();

private:
    int _open() const;
};

/// Whether reading comes to an end and takes nothing away from anybody, as with files, and with folders,
/// which can't be read: devices, pipes and sockets promise neither.
bool isSafeToRead(const struct stat &status);
/// How much of an open file is read: what it holds by now, however fast it grows. Files that the system makes
/// up tell no size.
qint64 bytesToRead(const struct stat &status);

} // namespace tidemark
