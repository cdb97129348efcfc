#include "replace/BackupFile.h"

#include "foundation/BackupName.h"
#include "foundation/FileSystemCalls.h"
#include "foundation/UniqueFile.h"
#include "replace/FileModifierErrors.h"
#include "replace/NewContent.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#ifdef __linux__
#include <linux/magic.h>
#include <sys/vfs.h>
#endif

namespace tidemark {

namespace {

/// Every file system takes names of this length; only longer ones need a look.
constexpr qsizetype SHORT_NAME = 120;
constexpr qsizetype LONGEST_NAME = 255;

/// The temporary folder. Where that is held in memory, and not by the user's choice, the one that outlives a
/// power cut.
QString transientBackupFolder()
{
    QString usual = QDir::tempPath();
#ifdef __linux__
    QString lasting = QStringLiteral("/var/tmp");
    struct statfs status;
    if (!qEnvironmentVariableIsSet("TMPDIR") &&
        ::statfs(QFile::encodeName(usual).constData(), &status) == 0 && status.f_type == TMPFS_MAGIC &&
        QFileInfo(lasting).isWritable())
        return lasting;
#endif
    return usual;
}

qsizetype longestNameIn(const FilePath &folder, const QByteArray &name)
{
    if (name.size() <= SHORT_NAME)
        return LONGEST_NAME;
    const long longest = ::pathconf(folder.cString(), _PC_NAME_MAX);
    return longest > 0 ? longest : LONGEST_NAME;
}

QByteArray backupTemplate(const FilePath &path, BackupFile::Kind kind)
{
    const FilePath folder = BackupFile::folderFor(path, kind);
    const QByteArray name = path.lastPathComponent();
    const int letters =
        kind == BackupFile::Kind::Transient ? LETTERS_OF_TRANSIENT_BACKUP : LETTERS_OF_LASTING_BACKUP;
    return folder.appendingPathComponent(backupNameTemplate(name, letters, longestNameIn(folder, name)))
        .bytes();
}

/// The original, open for reading; none, with errno, when it can't be. On a layered file system it is brought
/// to the layer on which it will be written first, since it is another file there.
Descriptor openOriginal(const FilePath &path)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    constexpr int FLAGS = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    Descriptor original(calls.open(path.cString(), O_RDONLY | FLAGS, 0));
#ifdef __linux__
    if (!original.isOpen() || calls.fileSystemType(original.number()) != OVERLAYFS_SUPER_MAGIC)
        return original;
    (void)original.close();
    Descriptor writable(calls.open(path.cString(), O_RDWR | FLAGS, 0));
    if (!writable.isOpen())
        return {};
    (void)writable.close();
    return Descriptor(calls.open(path.cString(), O_RDONLY | FLAGS, 0));
#else
    return original;
#endif
}

} // namespace

FilePath BackupFile::folderFor(const FilePath &path, Kind kind)
{
    return kind == Kind::Transient ? FilePath(QFile::encodeName(transientBackupFolder()))
                                   : path.deletingLastPathComponent();
}

std::optional<BackupFile> BackupFile::backupFileOf(const FilePath &path, Kind kind, Flush flush,
                                                   const BeforeMaking &beforeMaking, Original &original,
                                                   TDError &error, int &errorNumber)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    QByteArray name = backupTemplate(path, kind);
    const Descriptor file = openOriginal(path);
    if (!file.isOpen()) {
        errorNumber = errno;
        error = backupCopyError(path, FilePath(name), errorNumber);
        return {};
    }
    std::optional<BackupFile> backup;
    Descriptor descriptor = makeUniqueFile(
        name, [&](const QByteArray &backupPath) { return beforeMaking(FilePath(backupPath)); });
    if (!descriptor.isOpen()) {
        errorNumber = errno;
        error = backupCreationError(path, errorNumber);
    } else {
        backup = BackupFile(FilePath(name), std::move(descriptor));
        errorNumber = backup->_copyOriginalFileToBackupLocation(file.number(), kind, flush, original);
        if (errorNumber != 0) {
            error = errorNumber == ESTALE ? fileModifiedError(path)
                                          : backupCopyError(path, backup->path(), errorNumber);
            (void)calls.remove(backup->path().cString());
            backup.reset();
        }
    }
    return backup;
}

/// 0, or errno; ESTALE when the file changed meanwhile.
int BackupFile::_copyOriginalFileToBackupLocation(int file, Kind kind, Flush flush, Original &original)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    struct stat status;
    if (::fstat(file, &status) != 0)
        return errno;
    if (!S_ISREG(status.st_mode))
        return ENOTSUP;
    original.state = FileState::fromStatus(status);
    if (!(original.isContentHeld() ? _copyHeldContentOf(file, original) : _copyContentOf(file, original)))
        return errno;
    if (stateOfDescriptor(file) != original.state)
        return ESTALE;
    if (kind == Kind::Lasting)
        copyMetadata(file, _descriptor.number(), status);
    else
        copyAttributesAndDates(file, _descriptor.number(), status);
    if (flush == Flush::Yes) {
        if (calls.sync(_descriptor.number()) != 0)
            return errno;
        if (const int error = flushFolder(_path.deletingLastPathComponent()); error != 0)
            return error;
    }
    const std::optional<FileState> state = stateOfDescriptor(_descriptor.number());
    if (!state || state->size != original.state.size)
        return EIO;
    _state = *state;
    return 0;
}

/// False, with errno, unless the copy holds exactly what the file does.
bool BackupFile::_copyContentOf(int file, Original &original)
{
    const qint64 size = original.state.size;
    original.content.resize(0);
    if (FileSystemCalls::current().copyContent(file, _descriptor.number(), {}) != 0)
        return false;
    const std::optional<ContentDigest> digest = digestOfDescriptor(file, size);
    const std::optional<ContentDigest> copy =
        digest ? digestOfDescriptor(_descriptor.number(), size) : std::nullopt;
    if (!copy)
        return false;
    _content = *copy;
    errno = ESTALE;
    return digest == copy && copy->size == size;
}

/// The same by way of memory, where the content stays.
bool BackupFile::_copyHeldContentOf(int file, Original &original)
{
    static thread_local QByteArray copy;
    QByteArray &content = original.content;
    content.resize(original.state.size);
    const qint64 count = readFully(file, content.data(), content.size(), 0);
    if (count < 0 || FileSystemCalls::current().copyContent(file, _descriptor.number(), content) != 0)
        return false;
    copy.resize(content.size());
    const qint64 copyCount = readFully(_descriptor.number(), copy.data(), copy.size(), 0);
    if (copyCount < 0)
        return false;
    _content = digestOfBytes(content);
    errno = ESTALE;
    return count == content.size() && copyCount == count && copy == content;
}

bool BackupFile::isInPlace() const
{
    struct stat status;
    if (::lstat(_path.cString(), &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    const FileState now = FileState::fromStatus(status);
    return now.isSameFile(_state) && now.size == _state.size && now.date == _state.date;
}

bool BackupFile::deleteTemporaryBackupFile(TDError &error) const
{
    if (FileSystemCalls::current().remove(_path.cString()) == 0)
        return true;
    error = backupDeletionError(_path, errno);
    return false;
}

} // namespace tidemark
