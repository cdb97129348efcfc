#include "search/SearchedFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace tidemark {

/// A file that is saved by way of a new one frees its inode, which the next new file gets.
SearchedFiles::Identity SearchedFiles::_identityOf(const FileToRead &file, const struct stat &status)
{
    Identity identity = {status.st_dev, status.st_ino, 0};
#ifdef STATX_BTIME
    struct statx more = {};
    const bool isKnown = ::statx(AT_FDCWD, file.path.cString(), 0, STATX_BTIME | STATX_INO, &more) == 0 &&
                         (more.stx_mask & STATX_BTIME) != 0 && more.stx_ino == status.st_ino;
    constexpr qint64 NANOSECONDS = 1'000'000'000;
    if (isKnown)
        identity.birthTime = more.stx_btime.tv_sec * NANOSECONDS + more.stx_btime.tv_nsec;
#else
    (void)file;
#endif
    return identity;
}

bool SearchedFiles::admits(const FileToRead &file, const struct stat &status)
{
    if (status.st_nlink < 2 && !_locationsOverlap)
        return true;
    const Identity identity = _identityOf(file, status);
    const std::lock_guard lock(_mutex);
    const auto [known, isNew] = _firstNumbers.try_emplace(identity, file.number);
    if (isNew || known->second == file.number)
        return true;
    const bool isFirst = file.number < known->second;
    _refused.insert(isFirst ? known->second : file.number);
    _hasRefused = true;
    if (isFirst)
        known->second = file.number;
    return isFirst;
}

bool SearchedFiles::isKnownByAnotherPath(quint64 number)
{
    if (!_hasRefused)
        return false;
    const std::lock_guard lock(_mutex);
    return _refused.contains(number);
}

} // namespace tidemark
