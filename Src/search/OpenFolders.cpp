#include "search/OpenFolders.h"

#include "foundation/PatientOpen.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

namespace tidemark {

namespace {

constexpr rlim_t FEWEST_OPEN = 4;
constexpr rlim_t MOST_OPEN = 64;
constexpr rlim_t DESCRIPTORS_FOR_EACH_OPEN = 8;
constexpr int FOLDER_FLAGS = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

int openAlways(int parent, const char *path, int flags)
{
    int descriptor = -1;
    do
        descriptor = openat(parent, path, flags);
    while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

} // namespace

OpenFolders::OpenFolders(std::function<void()> giveBackDescriptors)
    : _giveBackDescriptors(std::move(giveBackDescriptors)),
      _mostOpen(std::clamp(mostDescriptors() / DESCRIPTORS_FOR_EACH_OPEN, FEWEST_OPEN, MOST_OPEN))
{}

OpenFolders::~OpenFolders()
{
    leaveAll();
}

int OpenFolders::enterScope(const QByteArray &path)
{
    leaveAll();
    Descriptor descriptor = _open(AT_FDCWD, path.constData(), FOLDER_FLAGS);
    if (!descriptor.isOpen())
        return errno;
    _scopePath = path;
    _path = path;
    while (_path.endsWith('/'))
        _path.chop(1);
    return _push(std::move(descriptor), _path.size());
}

int OpenFolders::enter(const char *name)
{
    Descriptor folder = _open(descriptor(), name, FOLDER_FLAGS | O_NOFOLLOW);
    if (!folder.isOpen())
        return errno;
    _path.resize(_levels[_depth - 1].pathLength);
    _path += '/';
    _path += name;
    return _push(std::move(folder), _path.size());
}

int OpenFolders::_push(Descriptor descriptor, qsizetype pathLength)
{
    if (_depth >= _mostOpen)
        _suspend(_levels[_depth - _mostOpen]);
    if (_depth == _levels.size())
        _levels.emplace_back();
    Level &level = _levels[_depth++];
    level.descriptor = std::move(descriptor);
    level.pathLength = pathLength;
    return level.listing.read(level.descriptor.number());
}

/// As many folders are closed as it takes; then whoever walks gives back what it can, and then it is waited.
Descriptor OpenFolders::_open(int parent, const char *path, int flags)
{
    int descriptor = openAlways(parent, path, flags);
    while (descriptor < 0 && lacksDescriptors(errno) && _suspendOutermost())
        descriptor = openAlways(parent, path, flags);
    if (descriptor >= 0 || !lacksDescriptors(errno))
        return Descriptor(descriptor);
    _giveBackDescriptors();
    return Descriptor(openPatiently([&] { return openAlways(parent, path, flags); }));
}

/// Never the innermost, in which things are opened. False when no other is open.
bool OpenFolders::_suspendOutermost()
{
    for (size_t index = 0; index + 1 < _depth; ++index) {
        if (_levels[index].descriptor.isOpen()) {
            _suspend(_levels[index]);
            return true;
        }
    }
    return false;
}

void OpenFolders::_suspend(Level &level)
{
    if (!level.descriptor.isOpen())
        return;
    struct stat status = {};
    // A folder that can't even tell who it is isn't recognised later on either, and is then given up.
    fstat(level.descriptor.number(), &status);
    level.device = status.st_dev;
    level.inode = status.st_ino;
    (void)level.descriptor.close();
}

int OpenFolders::leave()
{
    const Descriptor left = std::move(_levels[--_depth].descriptor);
    if (_depth == 0 || descriptor() >= 0)
        return 0;
    Level &level = _levels[_depth - 1];
    if (left.isOpen())
        level.descriptor = _verified(_open(left.number(), "..", FOLDER_FLAGS), level);
    if (!level.descriptor.isOpen())
        level.descriptor = _reopenFromScope(_depth - 1);
    if (level.descriptor.isOpen())
        return 0;
    level.listing.clear();
    return errno;
}

void OpenFolders::leaveAll()
{
    for (; _depth > 0; --_depth)
        (void)_levels[_depth - 1].descriptor.close();
}

/// The descriptor, or none and errno when it isn't that of the level's folder, which was moved then.
Descriptor OpenFolders::_verified(Descriptor descriptor, const Level &level)
{
    struct stat status = {};
    if (!descriptor.isOpen() || (fstat(descriptor.number(), &status) == 0 && status.st_dev == level.device &&
                                 status.st_ino == level.inode))
        return descriptor;
    errno = ENOENT;
    return Descriptor();
}

/// Name by name, as the whole path may be longer than the system takes.
Descriptor OpenFolders::_reopenFromScope(size_t index)
{
    Descriptor folder = _open(AT_FDCWD, _scopePath.constData(), FOLDER_FLAGS);
    for (size_t i = 1; i <= index && folder.isOpen(); ++i) {
        const qsizetype nameStart = _levels[i - 1].pathLength + 1;
        const QByteArray name = _path.mid(nameStart, _levels[i].pathLength - nameStart);
        folder = _open(folder.number(), name.constData(), FOLDER_FLAGS | O_NOFOLLOW);
    }
    return _verified(std::move(folder), _levels[index]);
}

QByteArrayList OpenFolders::foldersToCome(int level, bool withHidden) const
{
    const Level &open = _levels[size_t(level)];
    return open.listing.foldersToCome(_path.left(open.pathLength), withHidden);
}

QByteArray OpenFolders::path() const
{
    const qsizetype length = _levels[_depth - 1].pathLength;
    return length == 0 ? QByteArray("/") : _path.left(length);
}

QByteArray OpenFolders::pathOfEntry(const char *name) const
{
    const qsizetype folderLength = _levels[_depth - 1].pathLength;
    const size_t nameLength = std::strlen(name);
    QByteArray path(folderLength + 1 + qsizetype(nameLength), Qt::Uninitialized);
    char *target = path.data();
    std::memcpy(target, _path.constData(), size_t(folderLength));
    target[folderLength] = '/';
    std::copy_n(name, nameLength, target + folderLength + 1);
    return path;
}

} // namespace tidemark
