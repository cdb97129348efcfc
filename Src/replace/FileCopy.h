#pragma once

#include "foundation/FilePath.h"
#include "foundation/TDFileCommon.h"

#include <sys/stat.h>

namespace tidemark {

enum class Flush {
    No,
    Yes, ///< what was written is on the disk when the call returns
};

/// One state of one file: which it is, and when it was last changed.
struct FileState
{
    dev_t device = 0;
    ino_t inode = 0;
    qint64 size = 0; ///< in bytes
    FileDate date;

    static FileState fromStatus(const struct stat &status);
    bool isSameFile(const FileState &other) const { return device == other.device && inode == other.inode; }
    friend bool operator==(const FileState &, const FileState &) = default;
};

/// Copies a regular file to an open, empty file of this process that nobody else may open, with its mode,
/// owner, access control lists, extended attributes and dates. The copy is never open to anybody who can't
/// open the original, also not meanwhile: where owner or group can't be given to it, their rights are left
/// out. 0, or errno. `copied` gets the state of the original before it was copied.
int copyFile(const FilePath &from, int to, Flush flush, FileState *copied = nullptr);

/// The same to a path, whose name must be free; nothing is left there after a failure.
int copyFile(const FilePath &from, const FilePath &to, Flush flush);

/// Gives an open file the extended attributes of another, and the dates of its status. What the system keeps
/// for itself stays.
void copyAttributesAndDates(int from, int to, const struct stat &status);

/// Brings the names in a folder to the disk; 0, or errno. File systems that can't do it are left alone.
int flushFolder(const FilePath &folder);

} // namespace tidemark
