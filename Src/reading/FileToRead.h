#pragma once

#include "foundation/FilePath.h"

namespace tidemark {

/// A file by its path and, where the folder is open already, by its name in it, which spares the look-up of
/// the whole path and reaches files whose path is longer than the system takes.
struct FileToRead
{
    FilePath path;
    int folderDescriptor = -1;   ///< -1: none; not owned
    qsizetype nameInFolder = -1; ///< where in the path its name in that folder begins

    /// A descriptor open for reading, or -1 and errno. Never waits, not even for somebody to write to a pipe.
    int open() const;
};

} // namespace tidemark
