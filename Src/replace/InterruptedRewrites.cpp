#include "replace/InterruptedRewrites.h"

#include "foundation/BackupName.h"
#include "foundation/FileSystemCalls.h"
#include "foundation/FolderStream.h"
#include "replace/FileMetadata.h"
#include "replace/FlushedFileSystems.h"
#include "replace/NewContent.h"
#include "replace/OpenRegularFile.h"
#include "replace/PuttingBack.h"
#include "replace/RewriteChain.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark {

namespace {

using Entry = RewriteRecord::Left::File;

/// A group's record is far shorter; what is longer isn't one of ours.
constexpr qint64 LONGEST_RECORD = 128 << 20;
const QByteArray RECORD_NAME = QByteArrayLiteral("rewrites-");

/// Nothing, with errno, when it can't be read to its end.
std::optional<QByteArray> contentOf(int descriptor, qint64 size)
{
    QByteArray content(size, Qt::Uninitialized);
    const qint64 count = readFully(descriptor, content.data(), size, 0);
    return count == size ? std::optional(content) : std::nullopt;
}

/// Whether everything in the copy is at the beginning of the file, too.
bool beginsWithCopy(const OpenRegularFile &file, const OpenRegularFile &copy)
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

/// Writes a content once more where it stands, and brings it to the disk: after a failed flush the system may
/// take for written what isn't. False when the disk doesn't confirm it.
bool writeOnceMore(int file, const struct stat &status, const ContentDigest &content)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    QByteArray block(BYTES_AT_ONCE, Qt::Uninitialized);
    for (qint64 offset = 0; offset < content.size; offset += BYTES_AT_ONCE) {
        const qint64 count = qMin(BYTES_AT_ONCE, content.size - offset);
        if (readFully(file, block.data(), count, offset) != count ||
            calls.pwrite(file, block.constData(), size_t(count), off_t(offset)) != count)
            return false;
    }
    copyAttributesAndDates(file, file, status);
    return hasContent(file, content) && calls.sync(file) == 0;
}

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
    paths.reserve(records.size());
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
    const OpenRegularFile file(entry.path);
    const OpenRegularFile copy(entry.backup);
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
    const OpenRegularFile file(path);
    const std::optional<ContentDigest> now = file.digest();
    const auto whole = std::find_if(entries.rbegin(), entries.rend(), [&](const Entry &entry) {
        return now && (now == entry.oldContent || now == entry.newContent);
    });
    if (whole == entries.rend()) {
        _decideHalf(file, now, path, entries);
        return;
    }
    const size_t last = size_t(entries.rend() - whole) - 1;
    _whole.push_back({path, RewriteChain::beginning(entries, last), last, *now, file.status().st_ino, false});
}

/// Clears the backups of all files that hold what they held or were to hold, once the disk has that.
void InterruptedRewrites::_settleWhole()
{
    FlushedFileSystems fileSystems;
    for (Whole &whole : _whole) {
        const OpenRegularFile file(whole.path);
        whole.isFlushedWithOthers = file.isOpen() && file.status().st_ino == whole.inode &&
                                    fileSystems.addFileSystemOf(whole.path, file.status().st_dev);
    }
    const bool areFlushed = flushFileSystems(fileSystems.descriptors()) == 0;
    for (const Whole &whole : std::exchange(_whole, {})) {
        const std::vector<Entry> &entries = _begun[whole.path];
        if (_isOnDisk(whole, areFlushed)) {
            _clearBackups(whole);
            // A rewrite that began with what another one had left half written settles nothing of that.
            if (const auto open = RewriteChain::leftOpen(entries, whole.first, whole.last); !open.empty())
                _tellDamaged(whole.path, open);
        } else {
            _noteFailedFlush(entries.back().backup);
            const OpenRegularFile file(whole.path);
            _decideHalf(file, file.digest(), whole.path, entries);
        }
    }
}

bool InterruptedRewrites::_isOnDisk(const Whole &whole, bool areOthersFlushed) const
{
    const std::vector<Entry> &entries = *_begun.constFind(whole.path);
    if (std::any_of(entries.begin(), entries.end(), [](const Entry &entry) { return entry.isUnflushed; })) {
        const OpenRegularFile file(whole.path, O_RDWR);
        return file.isOpen() && file.status().st_ino == whole.inode &&
               writeOnceMore(file.descriptor(), file.status(), whole.now);
    }
    if (whole.isFlushedWithOthers && areOthersFlushed)
        return true;
    // The flush may have failed for another file. What this one lost would be gone from memory, too, so
    // reading it tells.
    const OpenRegularFile file(whole.path);
    return file.isOpen() && file.status().st_ino == whole.inode && file.flush() && file.digest() == whole.now;
}

void InterruptedRewrites::_clearBackups(const Whole &whole)
{
    const std::vector<Entry> &entries = *_begun.constFind(whole.path);
    for (const Entry &entry : entries) {
        if (whole.now == entry.newContent)
            ++_progressOfOwners[_owners.value(entry.backup)].done;
    }
    for (const FilePath &backup : RewriteChain::unneededBackups(entries, whole.first, whole.now))
        deleteBackup(backup);
}

/// A file that holds neither the one nor the other, or of which the disk doesn't confirm it.
void InterruptedRewrites::_decideHalf(const OpenRegularFile &file, const std::optional<ContentDigest> &now,
                                      const FilePath &path, const std::vector<Entry> &entries)
{
    // What can't be looked at this time is looked at the next time.
    if (file.isOpen() ? !now : !file.isNotThere()) {
        _isUncertain = true;
        return;
    }
    // Device numbers change from start to start. A backup of the right content beside the file tells enough.
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
    const size_t wanted = RewriteChain::latestThatFoundWhole(entries);
    std::vector<Entry> candidates(entries.rbegin(), entries.rend());
    candidates.insert(candidates.begin(), entries[wanted]);
    for (const Entry &entry : candidates) {
        const OpenRegularFile backup(entry.backup);
        const std::optional<ContentDigest> content = backup.digest();
        if (content == entry.oldContent) {
            _files.append({path, entry.backup, State::Damaged});
            _damaged.insert(path, entry);
            return;
        }
        const bool isKnown = backup.isOpen() ? content.has_value() : backup.isNotThere();
        _isUncertain = _isUncertain || !isKnown;
    }
    _files.append({path, entries[wanted].backup, State::UnusableBackup});
}

QList<InterruptedRewrites::Failure> InterruptedRewrites::putBack()
{
    _files.removeIf([](const File &file) { return file.state != State::Damaged; });
    std::vector<Entry> rewrites;
    for (const File &file : std::as_const(_files))
        rewrites.push_back(_damaged.value(file.path));
    PuttingBack puttingBack(rewrites, [this](const FilePath &backup) { _noteFailedFlush(backup); });
    const std::vector<int> errors = puttingBack.carryOut();
    QList<Failure> failures;
    for (qsizetype index = 0; index < _files.size(); ++index) {
        const File &file = _files[index];
        if (const int error = errors[size_t(index)]; error == 0)
            deleteBackup(file.backup);
        else
            failures.append({file, error});
    }
    _files.clear();
    for (const Failure &failure : std::as_const(failures))
        _files.append(failure.file);
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
