#include "replace/InterruptedRewrites.h"

#include "foundation/FileSystemCalls.h"
#include "replace/ContentDigest.h"
#include "replace/FileCopy.h"
#include "replace/RewriteRecord.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark {

namespace {

/// A record that is longer isn't one of ours.
constexpr qint64 LONGEST_RECORD = 256 << 20;
constexpr qint64 BLOCK = 1 << 20;

std::optional<ContentDigest> digestOfFile(const FilePath &path)
{
    QFile file(QFile::decodeName(path.bytes()));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    ContentHasher hasher;
    QByteArray block(BLOCK, Qt::Uninitialized);
    qint64 count = 0;
    while ((count = file.read(block.data(), BLOCK)) > 0)
        hasher.add(QByteArrayView(block).first(count));
    return count == 0 ? std::optional(hasher.digest()) : std::nullopt;
}

/// Whether everything in the copy is at the beginning of the file, too.
bool beginsWithCopy(const FilePath &path, const FilePath &copy)
{
    QFile file(QFile::decodeName(path.bytes()));
    QFile part(QFile::decodeName(copy.bytes()));
    if (!file.open(QIODevice::ReadOnly) || !part.open(QIODevice::ReadOnly))
        return false;
    while (!part.atEnd()) {
        const QByteArray bytes = part.read(BLOCK);
        if (bytes.isEmpty() || file.read(bytes.size()) != bytes)
            return false;
    }
    return true;
}

bool isRegularFile(const FilePath &path)
{
    struct stat status;
    return ::lstat(path.cString(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Nothing but a backup is ever deleted, whatever a record says.
bool isBackupName(const FilePath &path)
{
    return path.lastPathComponent().contains(".TDMBackup.") && isRegularFile(path);
}

void deleteBackup(const FilePath &backup)
{
    (void)FileSystemCalls::current().remove(backup.cString());
}

/// Clears what can be cleared; true when a decision is needed.
bool needsDecision(const RewriteRecord::LeftEntry &entry)
{
    // Without a backup there is nothing to choose: it was deleted when the new content was safe.
    if (!isBackupName(entry.backup))
        return false;
    const std::optional<ContentDigest> now = digestOfFile(entry.path);
    const bool isAsBefore = now && beginsWithCopy(entry.path, entry.backup) &&
                            (!entry.isBegun || now == digestOfFile(entry.backup));
    const bool isAsIntended = now && entry.isBegun && now == entry.newContent;
    if (isAsBefore || (isAsIntended && !entry.isBackupKept))
        deleteBackup(entry.backup);
    return entry.isBegun && !isAsBefore && !isAsIntended;
}

/// Fills the file with the content of its backup; it stays the same file. 0, or errno.
int restoreContent(int from, int to)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    struct stat status;
    if (::fstat(from, &status) != 0 || calls.truncate(to, 0) != 0 || calls.copyContent(from, to) != 0)
        return errno;
    struct stat newStatus;
    if (::fstat(to, &newStatus) != 0)
        return errno;
    if (newStatus.st_size != status.st_size)
        return EIO;
    copyAttributesAndDates(from, to, status);
    return calls.sync(to) != 0 ? errno : 0;
}

int putBackFile(const InterruptedRewrites::File &file)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    struct stat status;
    if (::stat(file.path.cString(), &status) != 0 && errno == ENOENT)
        return copyFile(file.backup, file.path, Flush::Yes);
    const int from = calls.open(file.backup.cString(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW, 0);
    if (from < 0)
        return errno;
    int error = 0;
    const int to = calls.open(file.path.cString(), O_WRONLY | O_CLOEXEC | O_NONBLOCK, 0);
    if (to < 0)
        error = errno;
    else
        error = restoreContent(from, to);
    (void)calls.close(from);
    if (to >= 0 && calls.close(to) != 0 && error == 0)
        error = errno;
    return error;
}

} // namespace

InterruptedRewrites::InterruptedRewrites(const FilePath &folder)
{
    const QDir records(QFile::decodeName(folder.bytes()));
    const QStringList names =
        records.entryList({QStringLiteral("rewrites-*")}, QDir::Files | QDir::Hidden, QDir::Name);
    for (const QString &name : names)
        _lookInto(folder.appendingPathComponent(QFile::encodeName(name)));
    std::sort(_files.begin(), _files.end(),
              [](const File &left, const File &right) { return left.path < right.path; });
}

InterruptedRewrites::~InterruptedRewrites()
{
    for (const Record &record : _records)
        (void)::close(record.descriptor);
}

void InterruptedRewrites::_lookInto(const FilePath &recordPath)
{
    const int descriptor = ::open(recordPath.cString(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0)
        return;
    QFile record;
    // A living process holds the lock of its record.
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0 || !record.open(descriptor, QIODevice::ReadOnly) ||
        record.size() > LONGEST_RECORD) {
        (void)::close(descriptor);
        return;
    }
    bool isDecided = true;
    for (const RewriteRecord::LeftEntry &entry : RewriteRecord::leftEntries(record.readAll())) {
        if (!needsDecision(entry))
            continue;
        isDecided = false;
        _files.append({entry.path, entry.backup});
    }
    if (!isDecided) {
        _records.push_back({recordPath, descriptor});
        return;
    }
    (void)::unlink(recordPath.cString());
    (void)::close(descriptor);
}

QList<InterruptedRewrites::Failure> InterruptedRewrites::putBack()
{
    QList<Failure> failures;
    QList<File> left;
    for (const File &file : std::as_const(_files)) {
        if (const int error = putBackFile(file); error != 0) {
            failures.append({file, error});
            left.append(file);
        } else {
            deleteBackup(file.backup);
        }
    }
    _files = left;
    if (_files.isEmpty())
        _removeRecords();
    return failures;
}

void InterruptedRewrites::keep()
{
    _files.clear();
    _removeRecords();
}

void InterruptedRewrites::_removeRecords()
{
    for (const Record &record : _records) {
        (void)::unlink(record.path.cString());
        (void)::close(record.descriptor);
    }
    _records.clear();
}

} // namespace tidemark
