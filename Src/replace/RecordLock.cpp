#include "replace/RecordLock.h"

#include "foundation/FileSystemCalls.h"
#include "foundation/UniqueFile.h"
#include "replace/NewContent.h"

#include <QFile>
#include <QSysInfo>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace tidemark {

namespace {

const QByteArray OWNER_SUFFIX = QByteArrayLiteral(".owner");

QByteArray machineName()
{
    QByteArray name = QSysInfo::machineHostName().toUtf8().toPercentEncoding();
    return name.isEmpty() ? QByteArrayLiteral("-") : name;
}

/// The time at which a process began, as the system counts it, so that a later one with its number isn't
/// taken for it;
/// "-" where that can't be told.
QByteArray beginningOf(qint64 process)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return QByteArrayLiteral("-");
    // Behind the name, which may hold anything: the twenty-second field of all.
    const QByteArray line = file.readAll();
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    return fields.value(19, QByteArrayLiteral("-"));
}

QByteArray identityOf(qint64 process)
{
    return machineName() + '\t' + QSysInfo::bootUniqueId() + '\t' + QByteArray::number(process) + '\t' +
           beginningOf(process);
}

bool isLockMissing(int errorNumber)
{
    return errorNumber != EWOULDBLOCK && errorNumber != EINTR;
}

QByteArray contentOf(const FilePath &path)
{
    const int descriptor = ::open(path.cString(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0)
        return {};
    QByteArray content(1024, Qt::Uninitialized);
    content.truncate(qMax(ssize_t(0), ::read(descriptor, content.data(), size_t(content.size()))));
    (void)::close(descriptor);
    return content;
}

} // namespace

QByteArray identityOfThisProcess()
{
    return identityOf(::getpid());
}

bool livesProcess(const QByteArray &identity)
{
    const QList<QByteArray> fields = identity.trimmed().split('\t');
    if (fields.size() != 4)
        return false;
    if (fields[0] != machineName())
        return true;
    const qint64 process = fields[2].toLongLong();
    const bool isThere = process > 0 && (::kill(pid_t(process), 0) == 0 || errno == EPERM);
    return isThere && fields[1] == QSysInfo::bootUniqueId() && fields[3] == beginningOf(process);
}

RecordLock::RecordLock(RecordLock &&other) noexcept : _owner(std::exchange(other._owner, {})) {}

RecordLock &RecordLock::operator=(RecordLock &&other) noexcept
{
    std::swap(_owner, other._owner);
    return *this;
}

RecordLock::~RecordLock()
{
    if (!_owner.isEmpty())
        (void)::unlink(_owner.cString());
}

bool RecordLock::take(int descriptor, const FilePath &path)
{
    if (FileSystemCalls::current().lock(descriptor) == 0) {
        // Somebody else may have taken it where there were no locks.
        const QByteArray owner = contentOf(FilePath(path.bytes() + OWNER_SUFFIX));
        return owner.isEmpty() || !livesProcess(owner);
    }
    return isLockMissing(errno) && _takeByName(path);
}

bool RecordLock::_takeByName(const FilePath &path)
{
    const FilePath owner(path.bytes() + OWNER_SUFFIX);
    QByteArray mine = owner.bytes() + "-XXXXXX";
    const int descriptor = makeUniqueFile(mine);
    if (descriptor < 0)
        return false;
    // It names its process from the moment on at which it has the name that counts.
    bool isTaken = writeAll(descriptor, identityOfThisProcess()) == 0;
    (void)::close(descriptor);
    if (isTaken && ::link(mine.constData(), owner.cString()) != 0) {
        isTaken = !livesProcess(contentOf(owner)) && ::unlink(owner.cString()) == 0 &&
                  ::link(mine.constData(), owner.cString()) == 0;
    }
    (void)::unlink(mine.constData());
    if (isTaken)
        _owner = owner;
    return isTaken;
}

} // namespace tidemark
