#include "replace/RewriteRecord.h"

#include "foundation/FileSystemCalls.h"
#include "foundation/UniqueFile.h"
#include "replace/FileMetadata.h"
#include "replace/NewContent.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark {

namespace {

// One entry a line, fields between tabs, paths percent-encoded.
const QByteArray OWNER_ENTRY = QByteArrayLiteral("owner");
const QByteArray PROGRESS_ENTRY = QByteArrayLiteral("progress");
const QByteArray BACKUP_ENTRY = QByteArrayLiteral("backup");
const QByteArray REWRITE_ENTRY = QByteArrayLiteral("rewrite");
/// Closes the list of rewrites, with how many there are: without this line none was begun.
const QByteArray BEGIN_ENTRY = QByteArrayLiteral("begin");
const QByteArray END_ENTRY = QByteArrayLiteral("end");
const QByteArray UNFLUSHED_ENTRY = QByteArrayLiteral("unflushed");

FilePath folderOfRecords;

QByteArray encoded(const FilePath &path)
{
    return path.bytes().toPercentEncoding(QByteArrayLiteral("/"));
}

FilePath decoded(const QByteArray &field)
{
    return FilePath(QByteArray::fromPercentEncoding(field));
}

QByteArray line(std::initializer_list<QByteArray> fields)
{
    return QByteArrayList(fields).join('\t') + '\n';
}

QByteArray hexadecimal(quint64 number)
{
    return QByteArray::number(number, 16);
}

QByteArray progressLine(RunProgress progress)
{
    return line({PROGRESS_ENTRY, QByteArray::number(progress.done), QByteArray::number(progress.total)});
}

QByteArray lineOf(const RewriteRecord::Entry &entry)
{
    return line({REWRITE_ENTRY, encoded(entry.path), encoded(entry.backup),
                 QByteArray::number(quint64(entry.file.device)),
                 QByteArray::number(quint64(entry.file.inode)), QByteArray::number(entry.oldContent.size),
                 hexadecimal(entry.oldContent.hash), QByteArray::number(entry.newContent.size),
                 hexadecimal(entry.newContent.hash),
                 entry.isBackupKept ? QByteArrayLiteral("kept") : QByteArrayLiteral("deleted")});
}

QByteArray failedFlushLines(const std::vector<FilePath> &backups)
{
    QByteArray lines;
    for (const FilePath &backup : backups)
        lines += line({UNFLUSHED_ENTRY, encoded(backup)});
    return lines;
}

ContentDigest digestOf(const QByteArray &size, const QByteArray &hash)
{
    return {size.toLongLong(), hash.toULongLong(nullptr, 16)};
}

/// Reads a record line by line.
class RecordReader
{
public:
    RewriteRecord::Left read(const QByteArray &content)
    {
        for (qsizetype start = 0, end = 0; (end = content.indexOf('\n', start)) >= 0; start = end + 1) {
            _readLine(content.mid(start, end - start).split('\t'));
        }
        std::erase_if(_left.files, [](const auto &file) { return file.path.isEmpty(); });
        for (RewriteRecord::Left::File &file : _left.files)
            file.isBegun = file.isBegun && _isBegun;
        return _left;
    }

private:
    void _readLine(const QList<QByteArray> &fields)
    {
        const QByteArray &kind = fields.first();
        if (kind == OWNER_ENTRY && fields.size() == 5) {
            _left.owner = fields.sliced(1).join('\t');
        } else if (kind == PROGRESS_ENTRY && fields.size() == 3) {
            _left.progress = {fields[1].toLongLong(), fields[2].toLongLong()};
        } else if (kind == BACKUP_ENTRY && fields.size() == 3) {
            _fileWithBackup(fields).isBegun = false;
        } else if (kind == REWRITE_ENTRY && fields.size() == 10) {
            _readRewrite(fields);
        } else if (kind == BEGIN_ENTRY && fields.size() == 2) {
            // The other lines count even when some are damaged: contents have to confirm what any of them
            // says.
            _isBegun = true;
            _left.lacksRewrites = fields[1].toLongLong() != _rewriteCount;
        } else if (kind == UNFLUSHED_ENTRY && fields.size() == 2) {
            if (const auto place = _places.constFind(decoded(fields[1])); place != _places.cend())
                _left.files[*place].isUnflushed = true;
        } else if (kind == END_ENTRY && fields.size() == 2) {
            if (const auto place = _places.constFind(decoded(fields[1])); place != _places.cend())
                _left.files[*place].path = FilePath();
        }
    }
    void _readRewrite(const QList<QByteArray> &fields)
    {
        ++_rewriteCount;
        RewriteRecord::Left::File &file = _fileWithBackup(fields);
        file.file.device = dev_t(fields[3].toULongLong());
        file.file.inode = ino_t(fields[4].toULongLong());
        file.oldContent = digestOf(fields[5], fields[6]);
        file.newContent = digestOf(fields[7], fields[8]);
        file.isBackupKept = fields[9] == "kept";
        file.isBegun = true;
    }
    /// The entry with the path and the backup that the line begins with.
    RewriteRecord::Left::File &_fileWithBackup(const QList<QByteArray> &fields)
    {
        const FilePath backup = decoded(fields[2]);
        auto place = _places.constFind(backup);
        if (place == _places.cend()) {
            place = _places.insert(backup, _left.files.size());
            _left.files.emplace_back();
        }
        RewriteRecord::Left::File &file = _left.files[*place];
        file.path = decoded(fields[1]);
        file.backup = backup;
        return file;
    }

    RewriteRecord::Left _left;
    QHash<FilePath, size_t> _places; ///< by backup
    qint64 _rewriteCount = 0;
    bool _isBegun = false;
};

} // namespace

bool makeUserFolder(const FilePath &folder)
{
    if (::mkdir(folder.cString(), S_IRWXU) == 0 || errno == EEXIST)
        return true;
    if (errno != ENOENT)
        return false;
    const QString above = QFile::decodeName(folder.deletingLastPathComponent().bytes());
    return QDir().mkpath(above) && (::mkdir(folder.cString(), S_IRWXU) == 0 || errno == EEXIST);
}

RewriteRecord::RewriteRecord(const FilePath &path, Descriptor descriptor, RecordLock lock)
    : _path(path), _lock(std::move(lock)), _descriptor(std::move(descriptor))
{}

std::shared_ptr<RewriteRecord> RewriteRecord::recordInFolder(const FilePath &folder, RunProgress progress,
                                                             int &errorNumber)
{
    QByteArray name = folder.appendingPathComponent(QByteArrayLiteral("rewrites-XXXXXX")).bytes();
    RecordLock lock;
    Descriptor descriptor = makeUserFolder(folder) ? makeUniqueFile(name) : Descriptor();
    if (!descriptor.isOpen()) {
        errorNumber = errno;
        return nullptr;
    }
    (void)::fcntl(descriptor.number(), F_SETFL, O_APPEND);
    struct stat status;
    // Another process that starts just now may have taken the file for one that was left behind.
    if (!lock.take(descriptor.number(), FilePath(name)) || ::fstat(descriptor.number(), &status) != 0 ||
        status.st_nlink == 0) {
        errorNumber = EAGAIN;
        return nullptr;
    }
    std::shared_ptr<RewriteRecord> record(
        new RewriteRecord(FilePath(name), std::move(descriptor), std::move(lock)));
    errorNumber = record->_append(line({OWNER_ENTRY, identityOfThisProcess()}) + progressLine(progress));
    return errorNumber == 0 ? record : nullptr;
}

RewriteRecord::~RewriteRecord()
{
    if (_openBackups.isEmpty())
        (void)FileSystemCalls::current().remove(_path.cString());
}

int RewriteRecord::_append(const QByteArray &lines)
{
    const int error = writeAll(_descriptor.number(), lines);
    if (error == 0) {
        _size += lines.size();
    } else {
        // Nothing half written: what follows must be readable.
        (void)FileSystemCalls::current().truncate(_descriptor.number(), off_t(_size));
    }
    return error;
}

int RewriteRecord::_flush()
{
    if (FileSystemCalls::current().sync(_descriptor.number()) != 0)
        return errno;
    if (const int error = flushFolder(_path.deletingLastPathComponent()); error != 0)
        return error;
    // The next start must find it under its name.
    struct stat own = {};
    struct stat found = {};
    const bool isInPlace = ::fstat(_descriptor.number(), &own) == 0 &&
                           ::lstat(_path.cString(), &found) == 0 && own.st_dev == found.st_dev &&
                           own.st_ino == found.st_ino;
    return isInPlace ? 0 : ENOENT;
}

int RewriteRecord::noteBackup(const FilePath &path, const FilePath &backup)
{
    const QByteArray entry = line({BACKUP_ENTRY, encoded(path), encoded(backup)});
    const std::lock_guard lock(_mutex);
    const int error = _append(entry);
    if (error == 0)
        _openBackups.insert(backup);
    return error;
}

int RewriteRecord::noteRewrites(const std::vector<Entry> &entries)
{
    QByteArray lines;
    for (const Entry &entry : entries)
        lines += lineOf(entry);
    const std::lock_guard lock(_mutex);
    const qint64 sizeBefore = _size;
    int error = _append(lines);
    if (error == 0)
        error = _append(line({BEGIN_ENTRY, QByteArray::number(entries.size())}));
    if (error == 0)
        error = _flush();
    if (error != 0) {
        (void)FileSystemCalls::current().truncate(_descriptor.number(), off_t(sizeBefore));
        return error;
    }
    for (const Entry &entry : entries)
        _openBackups.insert(entry.backup);
    return 0;
}

int RewriteRecord::noteEnds(const std::vector<FilePath> &backups)
{
    QByteArray lines;
    const std::lock_guard lock(_mutex);
    for (const FilePath &backup : backups) {
        if (_openBackups.remove(backup))
            lines += line({END_ENTRY, encoded(backup)});
    }
    return lines.isEmpty() ? 0 : _append(lines);
}

int RewriteRecord::noteFailedFlushes(const std::vector<FilePath> &backups)
{
    const std::lock_guard lock(_mutex);
    if (const int error = backups.empty() ? 0 : _append(failedFlushLines(backups)); error != 0)
        return error;
    return FileSystemCalls::current().sync(_descriptor.number()) == 0 ? 0 : errno;
}

int RewriteRecord::noteFailedFlush(int leftRecord, const FilePath &backup)
{
    (void)::lseek(leftRecord, 0, SEEK_END);
    if (const int error = writeAll(leftRecord, failedFlushLines({backup})); error != 0)
        return error;
    return FileSystemCalls::current().sync(leftRecord) == 0 ? 0 : errno;
}

int RewriteRecord::noteProgress(RunProgress progress)
{
    const std::lock_guard lock(_mutex);
    return _append(progressLine(progress));
}

RewriteRecord::Left RewriteRecord::read(const QByteArray &content)
{
    return RecordReader().read(content);
}

FilePath RewriteRecord::userFolder()
{
#ifdef __APPLE__
    const QString state = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
#else
    // A relative path there counts as none.
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(state))
        state = QDir::homePath() + QStringLiteral("/.local/state");
#endif
    return FilePath::fromDisplayText(state).appendingPathComponent(QByteArrayLiteral("tidemark"));
}

RewriteRecordFolder::RewriteRecordFolder(const FilePath &folder)
{
    folderOfRecords = folder;
}

RewriteRecordFolder::~RewriteRecordFolder()
{
    folderOfRecords = {};
}

FilePath RewriteRecordFolder::current()
{
    return folderOfRecords;
}

} // namespace tidemark
