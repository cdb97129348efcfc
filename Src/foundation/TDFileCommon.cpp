#include "foundation/TDFileCommon.h"

#include <sys/stat.h>

namespace tidemark {

FileDate FileDate::fromStatus(const struct stat &status)
{
#ifdef __APPLE__
    const timespec &date = status.st_mtimespec;
#else
    const timespec &date = status.st_mtim;
#endif
    return {qint64(date.tv_sec) * 1000000000 + date.tv_nsec};
}

std::optional<FileDate> TDFileCommon::fileModificationDate(const FilePath &path)
{
    struct stat status;
    if (stat(path.cString(), &status) != 0)
        return {};
    return FileDate::fromStatus(status);
}

} // namespace tidemark
