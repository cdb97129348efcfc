#include "replace/DeferredBackups.h"

#include "foundation/FileSystemCalls.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>

namespace tidemark {

namespace {

constexpr qsizetype MOST_WAITING = 1024;

DeferredBackups *currentBackups = nullptr;

} // namespace

DeferredBackups::DeferredBackups()
{
    currentBackups = this;
}

DeferredBackups::~DeferredBackups()
{
    (void)flush();
    currentBackups = nullptr;
}

DeferredBackups *DeferredBackups::current()
{
    return currentBackups;
}

void DeferredBackups::add(const FilePath &path, const FilePath &backup)
{
    struct stat status;
    if (::stat(path.cString(), &status) == 0 && !_fileOnDevice.contains(status.st_dev))
        _fileOnDevice.insert(status.st_dev, path);
    if (!backup.isEmpty())
        _waiting.append({path, backup});
}

bool DeferredBackups::isFull() const
{
    return _waiting.size() >= MOST_WAITING;
}

bool DeferredBackups::_flushFileSystems() const
{
    FileSystemCalls &calls = FileSystemCalls::current();
    return std::all_of(_fileOnDevice.begin(), _fileOnDevice.end(), [&calls](const FilePath &path) {
        const int descriptor = calls.open(path.cString(), O_RDONLY | O_CLOEXEC, 0);
        if (descriptor < 0)
            return false;
        const bool flushed = calls.syncFileSystem(descriptor) == 0;
        (void)calls.close(descriptor);
        return flushed;
    });
}

QList<FilePath> DeferredBackups::flush()
{
    QList<FilePath> left;
    const bool flushed = _flushFileSystems();
    for (const Rewritten &file : std::as_const(_waiting)) {
        if (!flushed || FileSystemCalls::current().remove(file.backup.cString()) != 0)
            left << file.path;
    }
    _waiting.clear();
    _fileOnDevice.clear();
    return left;
}

} // namespace tidemark
