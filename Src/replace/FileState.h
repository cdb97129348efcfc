#pragma once

#include "foundation/TDFileCommon.h"
#include "replace/ContentDigest.h"

#include <optional>
#include <sys/stat.h>

namespace tidemark {

/// One state of one file: which it is, and when its content and its properties were last changed.
struct FileState
{
    dev_t device = 0;
    ino_t inode = 0;
    qint64 size = 0;     ///< in bytes
    FileDate date;       ///< of the content
    FileDate changeDate; ///< of content, name or properties; nobody can set it

    static FileState fromStatus(const struct stat &status);
    bool isSameFile(const FileState &other) const { return device == other.device && inode == other.inode; }
    friend bool operator==(const FileState &, const FileState &) = default;
};

/// The state of an open file; nothing, with errno, when it can't be told.
std::optional<FileState> stateOfDescriptor(int descriptor);

/// The digest of an open file's first `size` bytes, wherever its position is; of fewer when there are no
/// more. Nothing, with errno, when they can't be read.
std::optional<ContentDigest> digestOfDescriptor(int descriptor, qint64 size);

/// Whether an open file holds exactly that.
bool hasContent(int descriptor, const ContentDigest &content);

} // namespace tidemark
