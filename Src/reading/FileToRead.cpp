#include "reading/FileToRead.h"

#include <fcntl.h>

namespace tidemark {

int FileToRead::open() const
{
    constexpr int FLAGS = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    if (folderDescriptor >= 0)
        return ::openat(folderDescriptor, path.cString() + nameInFolder, FLAGS);
    return ::open(path.cString(), FLAGS);
}

} // namespace tidemark
