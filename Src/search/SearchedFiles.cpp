#include "search/SearchedFiles.h"

#include <sys/stat.h>

namespace tidemark {

bool SearchedFiles::admits(const FileToRead &file, const struct stat &status)
{
    if (status.st_nlink < 2 && !_locationsOverlap)
        return true;
    const std::lock_guard lock(_mutex);
    const auto [known, isNew] = _firstNumbers.try_emplace({status.st_dev, status.st_ino}, file.number);
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
