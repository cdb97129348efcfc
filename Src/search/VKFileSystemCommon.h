#pragma once

#include "foundation/FilePath.h"

namespace tidemark {

class VKFileSystemCommon
{
public:
    /// True when the path differs from itself with all symbolic links resolved; a path that merely passes
    /// through a linked folder counts too. False for a path that doesn't exist.
    static bool pathIsSymbolicLink(const FilePath &path);
    /// True when the file is an alias file of the desktop; there is no such thing on Linux.
    static bool pathIsAlias(const FilePath &path);
};

} // namespace tidemark
