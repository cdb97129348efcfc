#include "replace/InterruptedRewrites.h"

#include "foundation/BackupName.h"
#include "foundation/FileSystemCalls.h"
#include "foundation/FolderStream.h"
#include "replace/BackupFile.h"
#include "replace/ContentOverwrite.h"
#include "replace/FileMetadata.h"
#include "replace/FlushedFileSystems.h"
#include "replace/NewContent.h"

#include <algorithm>
#include <cerrno>
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
        if (isOpen() && (::fstat(descriptor(), &_status) != 0 || !S_ISREG(_status.st_mode))) {
            (void)close();
            _errorNumber = ESTALE;
        }
    }

    bool isOpen() const { return _descriptor.isOpen(); }
    /// Why it isn't open.
    int errorNumber() const { return _errorNumber; }
    int descriptor() const { return _descriptor.number(); }
    const struct stat &status() const { return _status; }
    /// Nothing when it can't be read.
    std::optional<ContentDigest> digest() const
    {
        return isOpen() ? digestOfDescriptor(descriptor(), _status.st_size) : std::nullopt;
    }
    bool flush() const { return FileSystemCalls::current().sync(descriptor()) == 0; }
    /// 0, or errno.
    int close() { return _descriptor.close(); }

private:
    Descriptor _descriptor;
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

/// The rewrites that a chain settles nothing of: those in front of it, and such behind it as began with
/// another content, since the dates of records aren't always in their order.
std::vector<Entry> rewritesLeftOpen(const std::vector<Entry> &entries, size_t first, size_t last)
{
    std::vector<Entry> open(entries.begin(), entries.begin() + qsizetype(first));
    std::vector<Entry> settled(entries.begin() + qsizetype(first), entries.begin() + qsizetype(last) + 1);
    for (size_t index = last + 1; index < entries.size(); ++index) {
        const Entry &later = entries[index];
        const bool isSettled = std::any_of(settled.begin(), settled.end(),
                                           [&](const Entry &earlier) { return follows(later, earlier); });
        (isSettled ? settled : open).push_back(later);
    }
    return open;
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

/// Whether a file is flushed with its file system, of which there are only those that are known.
bool addFileSystemOf(FlushedFileSystems &fileSystems, const FilePath &path, dev_t device)
{
    return fileSystems.addFolder(path.deletingLastPathComponent()) == 0 && fileSystems.contains(device);
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
    FolderStream entries(::opendir(folder.cString()));
    while (const dirent *entry = entries.next()) {
        const QByteArray name(entry->d_name);
        const FilePath path = folder.appendingPathComponent(name);
        if (name.startsWith(RECORD_NAME) && !name.contains('.'))
            records.emplace_back(TDFileCommon::fileModificationDate(path).value_or(FileDate()), path);
    }
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
    _settleWhole();
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

InterruptedRewrites::~InterruptedRewrites() = default;

void InterruptedRewrites::_lookInto(const FilePath &recordPath)
{
    RecordLock lock;
    Descriptor descriptor(::open(recordPath.cString(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat status;
    // A living process holds the lock of its record.
    const bool isTaken = descriptor.isOpen() && ::fstat(descriptor.number(), &status) == 0 &&
                         S_ISREG(status.st_mode) && status.st_size <= LONGEST_RECORD &&
                         lock.take(descriptor.number(), recordPath) &&
                         ::fstat(descriptor.number(), &status) == 0 && status.st_nlink > 0;
    const std::optional<QByteArray> content =
        isTaken ? contentOf(descriptor.number(), status.st_size) : std::nullopt;
    if (!content)
        return;
    const RewriteRecord::Left left = RewriteRecord::read(*content);
    for (const Entry &entry : left.files) {
        if (entry.isBegun) {
            _begun[entry.path].push_back(entry);
            _owners.insert(entry.backup, left.owner);
            _recordOfBackup.insert(entry.backup, _records.size());
            continue;
        }
        _lookAtUnbegun(entry, left.lacksRewrites);
    }
    RunProgress &run = _progressOfOwners[left.owner];
    run.done = std::max(run.done, left.progress.done);
    run.total = std::max(run.total, left.progress.total);
    _records.push_back({recordPath, std::move(lock), std::move(descriptor)});
}

/// The backup was being made when the process ended, and its file wasn't touched; unless lines of the record
/// are lost, of which this file's may be one.
void InterruptedRewrites::_lookAtUnbegun(const Entry &entry, bool lacksRewrites)
{
    const OpenFile file(entry.path);
    const OpenFile copy(entry.backup);
    if (!file.isOpen() || !copy.isOpen())
        return;
    const bool isCopy = lacksRewrites ? file.status().st_size == copy.status().st_size &&
                                            beginsWithCopy(file, copy) && file.flush()
                                      : beginsWithCopy(file, copy);
    if (isCopy)
        deleteBackup(entry.backup);
    else if (lacksRewrites)
        _files.append({entry.path, entry.backup, State::UnusableBackup});
}

void InterruptedRewrites::_decide(const FilePath &path, const std::vector<Entry> &entries)
{
    const OpenFile file(path);
    const std::optional<ContentDigest> now = file.digest();
    const auto whole = std::find_if(entries.rbegin(), entries.rend(), [&](const Entry &entry) {
        return now && (now == entry.oldContent || now == entry.newContent);
    });
    if (whole == entries.rend()) {
        _decideHalf(file, now, path, entries);
        return;
    }
    const size_t last = size_t(entries.rend() - whole) - 1;
    _whole.push_back({path, beginningOfChain(entries, last), last, *now, file.status().st_ino, false});
}

/// Clears the backups of all files that hold what they held or were to hold, once the disk has that.
void InterruptedRewrites::_settleWhole()
{
    FlushedFileSystems fileSystems;
    for (Whole &whole : _whole) {
        const OpenFile file(whole.path);
        whole.isFlushedWithOthers = file.isOpen() && file.status().st_ino == whole.inode &&
                                    addFileSystemOf(fileSystems, whole.path, file.status().st_dev);
    }
    const bool areFlushed = flushFileSystems(fileSystems.descriptors()) == 0;
    for (const Whole &whole : std::exchange(_whole, {})) {
        const std::vector<Entry> &entries = _begun[whole.path];
        if (_isOnDisk(whole, areFlushed)) {
            _clearBackups(whole);
            // A rewrite that began with what another one had left half written settles nothing of that.
            if (const auto open = rewritesLeftOpen(entries, whole.first, whole.last); !open.empty())
                _tellDamaged(whole.path, open);
        } else {
            _noteFailedFlush(entries.back().backup);
            const OpenFile file(whole.path);
            _decideHalf(file, file.digest(), whole.path, entries);
        }
    }
}

bool InterruptedRewrites::_isOnDisk(const Whole &whole, bool areOthersFlushed) const
{
    const std::vector<Entry> &entries = *_begun.constFind(whole.path);
    if (std::any_of(entries.begin(), entries.end(), [](const Entry &entry) { return entry.isUnflushed; })) {
        const OpenFile file(whole.path, O_RDWR);
        return file.isOpen() && file.status().st_ino == whole.inode &&
               writeOnceMore(file.descriptor(), file.status(), whole.now);
    }
    if (whole.isFlushedWithOthers && areOthersFlushed)
        return true;
    // What failed may have been another file's. What this one lost is gone from memory, too, then.
    const OpenFile file(whole.path);
    return file.isOpen() && file.status().st_ino == whole.inode && file.flush() && file.digest() == whole.now;
}

void InterruptedRewrites::_clearBackups(const Whole &whole)
{
    const std::vector<Entry> &entries = *_begun.constFind(whole.path);
    for (const Entry &entry : entries) {
        if (whole.now == entry.newContent)
            ++_progressOfOwners[_owners.value(entry.backup)].done;
    }
    clearBackups(entries, whole.first, whole.now);
}

/// A file that holds neither the one nor the other, or of which the disk doesn't confirm it.
void InterruptedRewrites::_decideHalf(const OpenFile &file, const std::optional<ContentDigest> &now,
                                      const FilePath &path, const std::vector<Entry> &entries)
{
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

/// From now on what can be read of the file proves nothing.
void InterruptedRewrites::_noteFailedFlush(const FilePath &backup)
{
    if (const auto record = _recordOfBackup.constFind(backup); record != _recordOfBackup.cend())
        (void)RewriteRecord::noteFailedFlush(_records[*record].descriptor.number(), backup);
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

/// What stands in the file now, beside it or, where that can't be, in the temporary folder.
void InterruptedRewrites::_keepPresentContent(PuttingBack &file)
{
    for (const BackupFile::Kind kind : {BackupFile::Kind::Lasting, BackupFile::Kind::Transient}) {
        const bool isFlushedWithOthers = file.isFlushedWithOthers && kind == BackupFile::Kind::Lasting;
        TDError error;
        BackupFile::Original present;
        file.kept = BackupFile::backupFileOf(
            file.entry.path, kind, isFlushedWithOthers ? Flush::No : Flush::Yes,
            [](const FilePath &) { return 0; }, present, error, file.errorNumber);
        if (file.kept) {
            file.present = present.state;
            file.kept->closeDescriptor();
            file.errorNumber = 0;
            return;
        }
    }
    file.errorNumber = file.errorNumber != 0 ? file.errorNumber : ESTALE;
}

/// 0, or errno.
int InterruptedRewrites::_overwriteWithOld(const PuttingBack &putting)
{
    const Entry &entry = putting.entry;
    const OpenFile old(entry.backup);
    OpenFile file(entry.path, O_RDWR);
    if (!old.isOpen() || !file.isOpen())
        return old.isOpen() ? file.errorNumber() : old.errorNumber();
    (void)FileSystemCalls::current().takeLease(file.descriptor());
    const bool isAsLookedAt = FileState::fromStatus(file.status()) == putting.present &&
                              putting.present.inode == entry.file.inode && old.digest() == entry.oldContent &&
                              (putting.kept->content() != entry.newContent || entry.isUnflushed);
    if (!isAsLookedAt)
        return ESTALE;
    if (const int error = overwriteWithContentOf(old.descriptor(), file.descriptor()); error != 0)
        return error;
    if (!hasContent(file.descriptor(), entry.oldContent))
        return EIO;
    copyAttributesAndDates(old.descriptor(), file.descriptor(), old.status());
    if (putting.isFlushedWithOthers || file.flush())
        return file.close();
    const int flushError = errno;
    _noteFailedFlush(entry.backup);
    return flushError;
}

/// In steps for all files at once, each of which is on the disk before the next one.
void InterruptedRewrites::_putBackFiles(std::vector<PuttingBack> &files)
{
    FlushedFileSystems fileSystems;
    for (PuttingBack &file : files) {
        const OpenFile found(file.entry.path);
        file.isFlushedWithOthers =
            found.isOpen() && addFileSystemOf(fileSystems, file.entry.path, found.status().st_dev);
        _keepPresentContent(file);
    }
    const QList<int> descriptors = fileSystems.descriptors();
    int flushError = flushFileSystems(descriptors);
    for (PuttingBack &file : files) {
        if (file.errorNumber == 0)
            file.errorNumber =
                file.isFlushedWithOthers && flushError != 0 ? flushError : _overwriteWithOld(file);
    }
    flushError = flushError != 0 ? flushError : flushFileSystems(descriptors);
    for (PuttingBack &file : files) {
        if (flushError == 0 || !file.isFlushedWithOthers || file.errorNumber != 0)
            continue;
        file.errorNumber = flushError;
        _noteFailedFlush(file.entry.backup);
    }
}

QList<InterruptedRewrites::Failure> InterruptedRewrites::putBack()
{
    std::vector<PuttingBack> puttingBack;
    for (const File &file : std::as_const(_files)) {
        if (file.state == State::Damaged)
            puttingBack.push_back({file, _damaged.value(file.path), {}, {}, false, 0});
    }
    _putBackFiles(puttingBack);
    QList<Failure> failures;
    _files.clear();
    for (const PuttingBack &put : puttingBack) {
        if (put.errorNumber == 0) {
            deleteBackup(put.file.backup);
            continue;
        }
        failures.append({put.file, put.errorNumber});
        _files.append(put.file);
    }
    if (_files.isEmpty() && !_isUncertain)
        _removeRecords();
    return failures;
}

QList<QByteArray> InterruptedRewrites::ownersOfRunsCutShort() const
{
    QList<QByteArray> owners;
    for (auto run = _progressOfOwners.cbegin(); run != _progressOfOwners.cend(); ++run) {
        if (run->total > 1 && run->done < run->total)
            owners << run.key();
    }
    return owners;
}

void InterruptedRewrites::keep()
{
    _files.clear();
    if (!_isUncertain)
        _removeRecords();
}

void InterruptedRewrites::_removeRecords()
{
    for (Record &record : _records) {
        (void)::unlink(record.path.cString());
        (void)record.descriptor.close();
    }
    _records.clear();
}

} // namespace tidemark
