#include "replace/RecordLock.h"

#include "foundation/Descriptor.h"
#include "foundation/FileSystemCalls.h"
#include "foundation/UniqueFile.h"
#include "replace/NewContent.h"

#include <QFile>
#include <QSysInfo>
#include <QUuid>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace tidemark {

namespace {

const QByteArray OWNER_SUFFIX = QByteArrayLiteral(".owner");
constexpr int ATTEMPTS = 100;

QByteArray machineName()
{
    QByteArray name = QSysInfo::machineHostName().toUtf8().toPercentEncoding();
    return name.isEmpty() ? QByteArrayLiteral("-") : name;
}

/// The time at which a process began, as the system counts it, so that a later one with its number isn't
/// taken for it; "-" where that can't be told.
QByteArray beginningOf(qint64 process)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return QByteArrayLiteral("-");
    // The twenty-second field of all, counted from behind the name, which may hold anything.
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
    const Descriptor file(::open(path.cString(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!file.isOpen())
        return {};
    QByteArray content(1024, Qt::Uninitialized);
    content.truncate(qMax(ssize_t(0), ::read(file.number(), content.data(), size_t(content.size()))));
    return content;
}

/// What a file says that names a process.
struct Owner
{
    QByteArray identity;
    QByteArray token; ///< of its own
};

/// The file that names the process which takes over from an owner that ended.
FilePath nameBehind(const FilePath &path, const Owner &owner)
{
    return FilePath(path.bytes() + OWNER_SUFFIX + '.' + owner.token);
}

/// All owners, each of which took over from the one before it.
std::vector<Owner> ownersOf(const FilePath &path)
{
    std::vector<Owner> owners;
    FilePath name(path.bytes() + OWNER_SUFFIX);
    for (QByteArray content; !(content = contentOf(name)).isEmpty(); name = nameBehind(path, owners.back())) {
        const QList<QByteArray> lines = content.split('\n');
        owners.push_back({lines.first(), lines.value(1, QByteArrayLiteral("-"))});
    }
    return owners;
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

RecordLock::RecordLock(RecordLock &&other) noexcept
    : _path(std::move(other._path)), _owners(std::exchange(other._owners, {}))
{}

RecordLock &RecordLock::operator=(RecordLock &&other) noexcept
{
    std::swap(_path, other._path);
    std::swap(_owners, other._owners);
    return *this;
}

RecordLock::~RecordLock()
{
    if (_owners.empty())
        return;
    (void)::unlink(_owners.back().cString());
    // As long as the file is there, those of earlier owners lead the next one to its place.
    if (::access(_path.cString(), F_OK) == 0)
        return;
    for (const FilePath &owner : _owners)
        (void)::unlink(owner.cString());
}

bool RecordLock::take(int descriptor, const FilePath &path)
{
    if (FileSystemCalls::current().lock(descriptor) == 0) {
        // Somebody else may have taken it where there were no locks.
        const std::vector<Owner> owners = ownersOf(path);
        return owners.empty() || !livesProcess(owners.back().identity);
    }
    return isLockMissing(errno) && _takeByName(path);
}

bool RecordLock::_takeByName(const FilePath &path)
{
    QByteArray mine = path.bytes() + OWNER_SUFFIX + "-XXXXXX";
    Descriptor file = makeUniqueFile(mine);
    if (!file.isOpen())
        return false;
    // Written first and linked later: under the name that counts it names its process from the first moment
    // on.
    const QByteArray token = QUuid::createUuid().toByteArray(QUuid::Id128);
    const bool isWritten = writeAll(file.number(), identityOfThisProcess() + '\n' + token) == 0;
    (void)file.close();
    bool isTaken = false;
    bool isFree = isWritten;
    for (int attempt = 0; isFree && !isTaken && attempt < ATTEMPTS; ++attempt) {
        std::vector<FilePath> names;
        FilePath next(path.bytes() + OWNER_SUFFIX);
        for (const Owner &owner : ownersOf(path)) {
            isFree = isFree && !livesProcess(owner.identity);
            names.push_back(next);
            next = nameBehind(path, owner);
        }
        names.push_back(next);
        isTaken = isFree && ::link(mine.constData(), next.cString()) == 0;
        // Where another one was faster, it is the last owner now.
        isFree = isFree && (isTaken || errno == EEXIST);
        if (isTaken)
            _owners = names;
    }
    (void)::unlink(mine.constData());
    _path = path;
    return isTaken;
}

} // namespace tidemark
