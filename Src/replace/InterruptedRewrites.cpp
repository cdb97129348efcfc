#include "replace/InterruptedRewrites.h"

#include "foundation/BackupName.h"
#include "foundation/FileSystemCalls.h"
#include "replace/BackupFile.h"
#include "replace/ContentOverwrite.h"
#include "replace/FileMetadata.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark {

namespace {

constexpr qint64 BLOCK = 1 << 18;
const QByteArray RECORD_NAME = QByteArrayLiteral("rewrites-");

/// A regular file that is open for reading, or nothing: never by a link, and without waiting for anybody.
class OpenFile
{
public:
    explicit OpenFile(const FilePath &path, int access = O_RDONLY)
        : _descriptor(FileSystemCalls::current().open(path.cString(),
                                                      access | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0))
    {
        if (_descriptor >= 0 && (::fstat(_descriptor, &_status) != 0 || !S_ISREG(_status.st_mode))) {
            close();
            errno = ESTALE;
        }
    }
    ~OpenFile() { close(); }
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;

    bool isOpen() const { return _descriptor >= 0; }
    int descriptor() const { return _descriptor; }
    const struct stat &status() const { return _status; }
    std::optional<ContentDigest> digest() const
    {
        return isOpen() ? digestOfDescriptor(_descriptor, _status.st_size) : std::nullopt;
    }
    int close()
    {
        const int result = isOpen() ? FileSystemCalls::current().close(_descriptor) : 0;
        _descriptor = -1;
        return result == 0 ? 0 : errno;
    }

private:
    int _descriptor;
    struct stat _status = {};
};

QByteArray contentOf(int descriptor)
{
    QByteArray content;
    QByteArray block(BLOCK, Qt::Uninitialized);
    for (ssize_t count = 0; (count = ::pread(descriptor, block.data(), size_t(BLOCK), content.size())) > 0;)
        content.append(block.constData(), count);
    return content;
}

/// Whether everything in the copy is at the beginning of the file, too.
bool beginsWithCopy(const OpenFile &file, const OpenFile &copy)
{
    QByteArray bytes(BLOCK, Qt::Uninitialized);
    QByteArray part(BLOCK, Qt::Uninitialized);
    for (off_t offset = 0;;) {
        const ssize_t count = ::pread(copy.descriptor(), part.data(), size_t(BLOCK), offset);
        if (count <= 0)
            return count == 0;
        if (::pread(file.descriptor(), bytes.data(), size_t(count), offset) != count ||
            !std::equal(part.begin(), part.begin() + count, bytes.begin()))
            return false;
        offset += count;
    }
}

/// Nothing but a backup is ever deleted, whatever a record says.
void deleteBackup(const FilePath &backup)
{
    struct stat status;
    if (isBackupName(backup.lastPathComponent()) && ::lstat(backup.cString(), &status) == 0 &&
        S_ISREG(status.st_mode))
        (void)FileSystemCalls::current().remove(backup.cString());
}

/// A backup that was being made when the process ended: its file wasn't touched.
void clearUnfinishedBackup(const FilePath &path, const FilePath &backup)
{
    const OpenFile file(path);
    const OpenFile copy(backup);
    if (file.isOpen() && copy.isOpen() && beginsWithCopy(file, copy))
        deleteBackup(backup);
}

/// Backups that nobody needs, of a file that holds what a rewrite found or left.
void clearBackups(const std::vector<RewriteRecord::Left::File> &entries, const ContentDigest &now)
{
    bool isFinished = false;
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        isFinished = isFinished || entry->newContent == now;
        if (isFinished ? !entry->isBackupKept : entry->oldContent == now)
            deleteBackup(entry->backup);
    }
}

/// What stands in the file now, beside it or, where that can't be, in the temporary folder.
int keepPresentContent(const FilePath &path, FileState &state)
{
    int errorNumber = 0;
    for (const BackupFile::Kind kind : {BackupFile::Kind::Lasting, BackupFile::Kind::Transient}) {
        TDError error;
        if (BackupFile::backupFileOf(
                path, kind, Flush::Yes, [](const FilePath &) { return 0; }, state, error, errorNumber))
            return 0;
    }
    return errorNumber != 0 ? errorNumber : ESTALE;
}

/// 0, or errno.
int restoreContent(const OpenFile &old, const OpenFile &file, const ContentDigest &oldContent)
{
    if (const int error = overwriteWithContentOf(old.descriptor(), file.descriptor()); error != 0)
        return error;
    if (!hasContent(file.descriptor(), oldContent))
        return EIO;
    copyAttributesAndDates(old.descriptor(), file.descriptor(), old.status());
    return FileSystemCalls::current().sync(file.descriptor()) == 0 ? 0 : errno;
}

int putBackFile(const RewriteRecord::Left::File &entry)
{
    FileState present;
    if (const int error = keepPresentContent(entry.path, present); error != 0)
        return error;
    const OpenFile old(entry.backup);
    OpenFile file(entry.path, O_RDWR);
    if (!old.isOpen() || !file.isOpen())
        return errno;
    (void)FileSystemCalls::current().takeLease(file.descriptor());
    const bool isAsLookedAt = FileState::fromStatus(file.status()) == present &&
                              present.inode == entry.file.inode && old.digest() == entry.oldContent;
    if (!isAsLookedAt)
        return ESTALE;
    const int error = restoreContent(old, file, entry.oldContent);
    const int closingError = file.close();
    return error != 0 ? error : closingError;
}

std::vector<FilePath> recordsIn(const FilePath &folder)
{
    std::vector<std::pair<FileDate, FilePath>> records;
    DIR *entries = ::opendir(folder.cString());
    while (const dirent *entry = entries != nullptr ? ::readdir(entries) : nullptr) {
        const QByteArray name(entry->d_name);
        const FilePath path = folder.appendingPathComponent(name);
        if (name.startsWith(RECORD_NAME) && !name.contains('.'))
            records.emplace_back(TDFileCommon::fileModificationDate(path).value_or(FileDate()), path);
    }
    if (entries != nullptr)
        (void)::closedir(entries);
    std::sort(records.begin(), records.end());
    std::vector<FilePath> paths;
    for (const auto &[date, path] : records)
        paths.push_back(path);
    return paths;
}

} // namespace

InterruptedRewrites::InterruptedRewrites(const FilePath &folder)
{
    for (const FilePath &record : recordsIn(folder))
        _lookInto(record);
    for (auto file = _begun.cbegin(); file != _begun.cend(); ++file)
        _decide(file.key(), file.value());
    for (const RunProgress &run : std::as_const(_progressOfOwners)) {
        if (run.total > 1 && run.done < run.total) {
            _progress.done += run.done;
            _progress.total += run.total;
        }
    }
    std::sort(_files.begin(), _files.end(),
              [](const File &left, const File &right) { return left.path < right.path; });
    if (_files.isEmpty() && _progress.total == 0)
        _removeRecords();
}

InterruptedRewrites::~InterruptedRewrites()
{
    for (const Record &record : _records)
        (void)::close(record.descriptor);
}

void InterruptedRewrites::_lookInto(const FilePath &recordPath)
{
    const int descriptor = ::open(recordPath.cString(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    struct stat status;
    RecordLock lock;
    // A living process holds the lock of its record.
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        !lock.take(descriptor, recordPath)) {
        if (descriptor >= 0)
            (void)::close(descriptor);
        return;
    }
    const RewriteRecord::Left left = RewriteRecord::read(contentOf(descriptor));
    for (const Entry &entry : left.files) {
        if (entry.isBegun) {
            _begun[entry.path].push_back(entry);
            _owners.insert(entry.backup, left.owner);
        } else {
            clearUnfinishedBackup(entry.path, entry.backup);
        }
    }
    RunProgress &run = _progressOfOwners[left.owner];
    run.done = std::max(run.done, left.progress.done);
    run.total = std::max(run.total, left.progress.total);
    _records.push_back({recordPath, descriptor, std::move(lock)});
}

void InterruptedRewrites::_decide(const FilePath &path, const std::vector<Entry> &entries)
{
    const OpenFile file(path);
    const std::optional<ContentDigest> now = file.digest();
    const bool isWhole = now && std::any_of(entries.begin(), entries.end(), [&](const Entry &entry) {
                             return now == entry.oldContent || now == entry.newContent;
                         });
    for (const Entry &entry : entries) {
        if (now == entry.newContent)
            ++_progressOfOwners[_owners.value(entry.backup)].done;
    }
    if (isWhole)
        clearBackups(entries, *now);
    // Numbers of devices change from start to start; a backup of the right content beside the file tells
    // enough.
    else if (!file.isOpen() || file.status().st_ino != entries.back().file.inode)
        _files.append({path, entries.back().backup, State::Moved});
    else
        _tellDamaged(path, entries);
}

void InterruptedRewrites::_tellDamaged(const FilePath &path, const std::vector<Entry> &entries)
{
    const auto usable = std::find_if(entries.rbegin(), entries.rend(), [](const Entry &entry) {
        return OpenFile(entry.backup).digest() == entry.oldContent;
    });
    if (usable == entries.rend()) {
        _files.append({path, entries.back().backup, State::UnusableBackup});
        return;
    }
    _files.append({path, usable->backup, State::Damaged});
    _damaged.insert(path, *usable);
}

QList<InterruptedRewrites::Failure> InterruptedRewrites::putBack()
{
    QList<Failure> failures;
    for (const File &file : std::as_const(_files)) {
        if (file.state != State::Damaged)
            continue;
        if (const int error = putBackFile(_damaged.value(file.path)); error != 0)
            failures.append({file, error});
        else
            deleteBackup(file.backup);
    }
    _files.clear();
    for (const Failure &failure : std::as_const(failures))
        _files.append(failure.file);
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
