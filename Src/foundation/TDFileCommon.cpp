#include "foundation/TDFileCommon.h"

#include <sys/stat.h>

namespace tidemark {

namespace {

FileDate dateOfTime(const timespec &time)
{
    return {qint64(time.tv_sec) * 1000000000 + time.tv_nsec};
}

} // namespace

FileDate FileDate::fromStatus(const struct stat &status)
{
#ifdef __APPLE__
    return dateOfTime(status.st_mtimespec);
#else
    return dateOfTime(status.st_mtim);
#endif
}

FileDate FileDate::ofStatusChange(const struct stat &status)
{
#ifdef __APPLE__
    return dateOfTime(status.st_ctimespec);
#else
    return dateOfTime(status.st_ctim);
#endif
}

FileDate FileDate::now()
{
    timespec time = {};
    (void)::clock_gettime(CLOCK_REALTIME, &time);
    return dateOfTime(time);
}

std::optional<FileDate> TDFileCommon::fileModificationDate(const FilePath &path)
{
    struct stat status;
    if (stat(path.cString(), &status) != 0)
        return {};
    return FileDate::fromStatus(status);
}

} // namespace tidemark
