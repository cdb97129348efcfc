#include "replace/InterruptedRewrites.h"

#include "foundation/BackupName.h"
#include "foundation/FileSystemCalls.h"
#include "replace/BackupFile.h"
#include "replace/ContentOverwrite.h"
#include "replace/FileMetadata.h"
#include "replace/NewContent.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark {

namespace {

using Entry = RewriteRecord::Left::File;

constexpr qint64 BLOCK = 1 << 18;
/// A group's record is far shorter; what is longer isn't one of ours.
constexpr qint64 LONGEST_RECORD = 128 << 20;
const QByteArray RECORD_NAME = QByteArrayLiteral("rewrites-");

/// Whether an error number says what is at a path, or only that it couldn't be looked at this time.
bool tellsWhatIsThere(int errorNumber)
{
    return errorNumber == ENOENT || errorNumber == ENOTDIR || errorNumber == ELOOP || errorNumber == ESTALE ||
           errorNumber == ENXIO || errorNumber == EISDIR;
}

} // namespace

/// A regular file that is open, or nothing: never by a link, and without waiting for anybody.
class InterruptedRewrites::OpenFile
{
public:
    explicit OpenFile(const FilePath &path, int access = O_RDONLY)
        : _descriptor(FileSystemCalls::current().open(path.cString(),
                                                      access | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0))
    {
        _errorNumber = isOpen() ? 0 : errno;
        if (isOpen() && (::fstat(_descriptor, &_status) != 0 || !S_ISREG(_status.st_mode))) {
            close();
            _errorNumber = ESTALE;
        }
    }
    ~OpenFile() { close(); }
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;

    bool isOpen() const { return _descriptor >= 0; }
    /// Why it isn't open.
    int errorNumber() const { return _errorNumber; }
    int descriptor() const { return _descriptor; }
    const struct stat &status() const { return _status; }
    /// Nothing when it can't be read.
    std::optional<ContentDigest> digest() const
    {
        return isOpen() ? digestOfDescriptor(_descriptor, _status.st_size) : std::nullopt;
    }
    bool flush() const { return FileSystemCalls::current().sync(_descriptor) == 0; }
    int close()
    {
        const int result = isOpen() ? FileSystemCalls::current().close(_descriptor) : 0;
        _descriptor = -1;
        return result == 0 ? 0 : errno;
    }

private:
    int _descriptor;
    int _errorNumber = 0;
    struct stat _status = {};
};

namespace {

/// Nothing, with errno, when it can't be read to its end.
std::optional<QByteArray> contentOf(int descriptor, qint64 size)
{
    QByteArray content(size, Qt::Uninitialized);
    const qint64 count = readFully(descriptor, content.data(), size, 0);
    return count == size ? std::optional(content) : std::nullopt;
}

/// Whether everything in the copy is at the beginning of the file, too.
template <typename File>
bool beginsWithCopy(const File &file, const File &copy)
{
    const qint64 size = copy.status().st_size;
    const std::optional<ContentDigest> digest = copy.digest();
    return digest && file.status().st_size >= size && digestOfDescriptor(file.descriptor(), size) == digest;
}

/// Nothing but a backup is ever deleted, whatever a record says.
void deleteBackup(const FilePath &backup)
{
    struct stat status;
    if (isBackupName(backup.lastPathComponent()) && ::lstat(backup.cString(), &status) == 0 &&
        S_ISREG(status.st_mode))
        (void)FileSystemCalls::current().remove(backup.cString());
}

/// Whether a rewrite found what the one before it found or left, so that nothing of the earlier one is open.
bool follows(const Entry &later, const Entry &earlier)
{
    return later.oldContent == earlier.newContent || later.oldContent == earlier.oldContent;
}

/// The first of the rewrites that led to the one with the index without anything open between them.
size_t beginningOfChain(const std::vector<Entry> &entries, size_t index)
{
    while (index > 0 && follows(entries[index], entries[index - 1]))
        --index;
    return index;
}

/// Backups that nobody needs, of a file that holds what a rewrite found or left, on the disk.
void clearBackups(const std::vector<Entry> &entries, size_t first, const ContentDigest &now)
{
    bool isFinished = false;
    for (size_t index = entries.size(); index-- > first;) {
        const Entry &entry = entries[index];
        isFinished = isFinished || entry.newContent == now;
        if (isFinished ? !entry.isBackupKept : entry.oldContent == now)
            deleteBackup(entry.backup);
    }
}

/// What stands in the file now, beside it or, where that can't be, in the temporary folder.
std::optional<BackupFile> keepPresentContent(const FilePath &path, FileState &state, int &errorNumber)
{
    for (const BackupFile::Kind kind : {BackupFile::Kind::Lasting, BackupFile::Kind::Transient}) {
        TDError error;
        auto backup = BackupFile::backupFileOf(
            path, kind, Flush::Yes, [](const FilePath &) { return 0; }, state, error, errorNumber);
        if (backup)
            return backup;
    }
    errorNumber = errorNumber != 0 ? errorNumber : ESTALE;
    return {};
}

/// Writes a content once more where it stands, and brings it to the disk: after a failed flush the system may
/// take for written what isn't. False when the disk doesn't confirm it.
bool writeOnceMore(int file, const struct stat &status, const ContentDigest &content)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    QByteArray block(BLOCK, Qt::Uninitialized);
    for (qint64 offset = 0; offset < content.size; offset += BLOCK) {
        const qint64 count = qMin(BLOCK, content.size - offset);
        if (readFully(file, block.data(), count, offset) != count ||
            calls.pwrite(file, block.constData(), size_t(count), off_t(offset)) != count)
            return false;
    }
    copyAttributesAndDates(file, file, status);
    return hasContent(file, content) && calls.sync(file) == 0;
}

} // namespace

namespace {

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
    if (_files.isEmpty() && _progress.total == 0 && !_isUncertain)
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
    const bool isTaken = descriptor >= 0 && ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
                         status.st_size <= LONGEST_RECORD && lock.take(descriptor, recordPath);
    const std::optional<QByteArray> content = isTaken ? contentOf(descriptor, status.st_size) : std::nullopt;
    if (!content) {
        if (descriptor >= 0)
            (void)::close(descriptor);
        return;
    }
    const RewriteRecord::Left left = RewriteRecord::read(*content);
    for (const Entry &entry : left.files) {
        if (entry.isBegun) {
            _begun[entry.path].push_back(entry);
            _owners.insert(entry.backup, left.owner);
            _recordOfBackup.insert(entry.backup, _records.size());
            continue;
        }
        // The backup was being made when the process ended: its file wasn't touched.
        const OpenFile file(entry.path);
        const OpenFile copy(entry.backup);
        if (file.isOpen() && copy.isOpen() && beginsWithCopy(file, copy))
            deleteBackup(entry.backup);
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
    const auto whole = std::find_if(entries.rbegin(), entries.rend(), [&](const Entry &entry) {
        return now && (now == entry.oldContent || now == entry.newContent);
    });
    if (whole != entries.rend()) {
        const size_t first = beginningOfChain(entries, size_t(entries.rend() - whole) - 1);
        if (_settleWhole(file, entries, first, *now)) {
            // A rewrite that began with what another one had left half written settles nothing of that.
            if (first > 0)
                _tellDamaged(path, {entries.begin(), entries.begin() + qsizetype(first)});
            return;
        }
    }
    // What can't be looked at this time is looked at the next time.
    if (file.isOpen() ? !now : !tellsWhatIsThere(file.errorNumber())) {
        _isUncertain = true;
        return;
    }
    // Numbers of devices change from start to start; a backup of the right content beside the file tells
    // enough.
    if (file.isOpen() && file.status().st_ino == entries.back().file.inode) {
        _tellDamaged(path, entries);
        return;
    }
    // Without its folder the disk may just not be there.
    _isUncertain = _isUncertain || ::access(path.deletingLastPathComponent().cString(), F_OK) != 0;
    _files.append({path, entries.back().backup, State::Moved});
}

/// Clears the backups of a file that holds what it held or was to hold; false when the disk doesn't confirm
/// that.
bool InterruptedRewrites::_settleWhole(const OpenFile &file, const std::vector<Entry> &entries, size_t first,
                                       const ContentDigest &now)
{
    const bool isUnflushed =
        std::any_of(entries.begin(), entries.end(), [](const Entry &entry) { return entry.isUnflushed; });
    bool isOnDisk = false;
    if (isUnflushed) {
        const OpenFile again(entries.back().path, O_RDWR);
        isOnDisk = again.isOpen() && again.status().st_ino == file.status().st_ino &&
                   writeOnceMore(again.descriptor(), again.status(), now);
    } else {
        isOnDisk = file.flush();
    }
    if (!isOnDisk) {
        _noteFailedFlush(entries.back().backup);
        return false;
    }
    for (const Entry &entry : entries) {
        if (now == entry.newContent)
            ++_progressOfOwners[_owners.value(entry.backup)].done;
    }
    clearBackups(entries, first, now);
    return true;
}

/// From now on what can be read of the file proves nothing.
void InterruptedRewrites::_noteFailedFlush(const FilePath &backup)
{
    if (const auto record = _recordOfBackup.constFind(backup); record != _recordOfBackup.cend())
        (void)RewriteRecord::noteFailedFlush(_records[*record].descriptor, backup);
}

void InterruptedRewrites::_tellDamaged(const FilePath &path, const std::vector<Entry> &entries)
{
    // What the last rewrite found is the old content, unless another one had left it half written.
    size_t wanted = entries.size() - 1;
    while (wanted > 0 && !follows(entries[wanted], entries[wanted - 1]))
        --wanted;
    std::vector<Entry> candidates(entries.rbegin(), entries.rend());
    candidates.insert(candidates.begin(), entries[wanted]);
    for (const Entry &entry : candidates) {
        const OpenFile backup(entry.backup);
        const std::optional<ContentDigest> content = backup.digest();
        if (content == entry.oldContent) {
            _files.append({path, entry.backup, State::Damaged});
            _damaged.insert(path, entry);
            return;
        }
        const bool isKnown = backup.isOpen() ? content.has_value() : tellsWhatIsThere(backup.errorNumber());
        _isUncertain = _isUncertain || !isKnown;
    }
    _files.append({path, entries[wanted].backup, State::UnusableBackup});
}

/// 0, or errno.
int InterruptedRewrites::_putBackFile(const Entry &entry)
{
    FileState present;
    int errorNumber = 0;
    const std::optional<BackupFile> kept = keepPresentContent(entry.path, present, errorNumber);
    if (!kept)
        return errorNumber;
    const OpenFile old(entry.backup);
    OpenFile file(entry.path, O_RDWR);
    if (!old.isOpen() || !file.isOpen())
        return old.isOpen() ? file.errorNumber() : old.errorNumber();
    (void)FileSystemCalls::current().takeLease(file.descriptor());
    const bool isAsLookedAt = FileState::fromStatus(file.status()) == present &&
                              present.inode == entry.file.inode && old.digest() == entry.oldContent &&
                              (kept->content() != entry.newContent || entry.isUnflushed);
    if (!isAsLookedAt)
        return ESTALE;
    if (const int error = overwriteWithContentOf(old.descriptor(), file.descriptor()); error != 0)
        return error;
    if (!hasContent(file.descriptor(), entry.oldContent))
        return EIO;
    copyAttributesAndDates(old.descriptor(), file.descriptor(), old.status());
    if (file.flush())
        return file.close();
    const int flushError = errno;
    _noteFailedFlush(entry.backup);
    return flushError;
}

QList<InterruptedRewrites::Failure> InterruptedRewrites::putBack()
{
    QList<Failure> failures;
    for (const File &file : std::as_const(_files)) {
        if (file.state != State::Damaged)
            continue;
        if (const int error = _putBackFile(_damaged.value(file.path)); error != 0)
            failures.append({file, error});
        else
            deleteBackup(file.backup);
    }
    _files.clear();
    for (const Failure &failure : std::as_const(failures))
        _files.append(failure.file);
    if (_files.isEmpty() && !_isUncertain)
        _removeRecords();
    return failures;
}

void InterruptedRewrites::keep()
{
    _files.clear();
    if (!_isUncertain)
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
