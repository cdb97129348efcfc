#include "search/SearchedFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace tidemark {

namespace {

/// Files are counted from 1.
constexpr quint64 BEFORE_ALL = 0;

} // namespace

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
    if (_isListedBefore(file, identity)) {
        if (file.listed->otherPath == ListedInode::OtherPath::Read)
            _firstNumbers.try_emplace(identity, BEFORE_ALL);
        else
            _inDoubt.insert(file.number);
    }
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

/// A file that is younger than the search has the inode of one that is gone.
bool SearchedFiles::_isListedBefore(const FileToRead &file, const Identity &identity) const
{
    return file.listed && file.listed->otherPath != ListedInode::OtherPath::None &&
           file.listed->device == identity.device && file.listed->inode == identity.inode &&
           FileDate{identity.birthTime} < _began;
}

void SearchedFiles::didNotOpen(const FileToRead &file)
{
    const std::lock_guard lock(_mutex);
    _unopened.insert(file.number);
    _hasUnopened = true;
}

bool SearchedFiles::isUnopened(quint64 number)
{
    if (!_hasUnopened)
        return false;
    const std::lock_guard lock(_mutex);
    return _unopened.contains(number);
}

bool SearchedFiles::isInDoubt(quint64 number)
{
    const std::lock_guard lock(_mutex);
    return _inDoubt.contains(number);
}

bool SearchedFiles::isKnownByAnotherPath(quint64 number)
{
    if (!_hasRefused)
        return false;
    const std::lock_guard lock(_mutex);
    return _refused.contains(number);
}

} // namespace tidemark
