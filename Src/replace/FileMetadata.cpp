#include "replace/FileMetadata.h"

#include "foundation/Descriptor.h"
#include "foundation/FileSystemCalls.h"

#include <QByteArray>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace tidemark {

namespace {

constexpr const char *ACCESS_CONTROL_LIST = "system.posix_acl_access";

#ifdef __APPLE__
ssize_t listAttributes(int file, char *names, size_t size)
{
    return flistxattr(file, names, size, 0);
}
ssize_t readAttribute(int file, const char *name, void *value, size_t size)
{
    return fgetxattr(file, name, value, size, 0, 0);
}
int writeAttribute(int file, const char *name, const void *value, size_t size)
{
    return fsetxattr(file, name, value, size, 0, 0);
}
#else
ssize_t listAttributes(int file, char *names, size_t size)
{
    return flistxattr(file, names, size);
}
ssize_t readAttribute(int file, const char *name, void *value, size_t size)
{
    return fgetxattr(file, name, value, size);
}
int writeAttribute(int file, const char *name, const void *value, size_t size)
{
    return fsetxattr(file, name, value, size, 0);
}
#endif

/// Attributes that the system keeps for itself can't be set; that is no failure of the copy.
void copyAttributes(int from, int to, bool withAccessControlList)
{
    const ssize_t size = listAttributes(from, nullptr, 0);
    if (size <= 0)
        return;
    QByteArray names(size, Qt::Uninitialized);
    const ssize_t length = listAttributes(from, names.data(), size_t(size));
    names.truncate(qMax(ssize_t(0), length));
    for (const char *name = names.constData(); name < names.constData() + names.size();
         name += qstrlen(name) + 1) {
        const ssize_t valueSize = readAttribute(from, name, nullptr, 0);
        if (valueSize < 0 || (!withAccessControlList && qstrcmp(name, ACCESS_CONTROL_LIST) == 0))
            continue;
        QByteArray value(valueSize, Qt::Uninitialized);
        const ssize_t valueLength = readAttribute(from, name, value.data(), size_t(valueSize));
        if (valueLength >= 0)
            (void)writeAttribute(to, name, value.constData(), size_t(valueLength));
    }
}

/// Gives the copy owner, group and mode as far as that is allowed. Whether it belongs to the same group; if
/// not, it has no rights for its group, which would be somebody else's.
bool copyRights(int to, const struct stat &now, const struct stat &status)
{
    mode_t mode = status.st_mode & 07777;
    const bool sameOwner = now.st_uid == status.st_uid || ::fchown(to, status.st_uid, gid_t(-1)) == 0;
    const bool sameGroup = now.st_gid == status.st_gid || ::fchown(to, uid_t(-1), status.st_gid) == 0;
    if (!sameOwner)
        mode &= ~mode_t(S_ISUID);
    if (!sameGroup)
        mode &= ~mode_t(S_ISGID | S_IRWXG);
    (void)::fchmod(to, mode);
    return sameGroup;
}

void copyDates(int to, const struct stat &status)
{
#ifdef __APPLE__
    const timespec dates[2] = {status.st_atimespec, status.st_mtimespec};
#else
    const timespec dates[2] = {status.st_atim, status.st_mtim};
#endif
    (void)::futimens(to, dates);
}

} // namespace

void copyMetadata(int from, int to, const struct stat &status)
{
    struct stat now;
    if (::fstat(to, &now) != 0)
        return;
    // Rights first: a change of owner would take some attributes away again.
    const bool sameGroup = copyRights(to, now, status);
    copyAttributes(from, to, sameGroup);
    copyDates(to, status);
}

void copyAttributesAndDates(int from, int to, const struct stat &status)
{
    copyAttributes(from, to, false);
    copyDates(to, status);
}

int flushFolder(const FilePath &folder)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    const Descriptor descriptor(calls.open(folder.cString(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0));
    // A folder that may be written but not read. Flushing a new file in it brings its name along.
    if (!descriptor.isOpen())
        return errno == EACCES ? 0 : errno;
    return calls.sync(descriptor.number()) != 0 && errno != EINVAL ? errno : 0;
}

} // namespace tidemark
