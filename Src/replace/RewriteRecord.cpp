#include "replace/RewriteRecord.h"

#include "foundation/FileSystemCalls.h"
#include "replace/FileCopy.h"
#include "replace/NewContent.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark {

namespace {

// One entry a line, fields between tabs, paths percent-encoded.
const QByteArray BACKUP_ENTRY = QByteArrayLiteral("backup");
const QByteArray REWRITE_ENTRY = QByteArrayLiteral("rewrite");
const QByteArray END_ENTRY = QByteArrayLiteral("end");

RewriteRecord *currentRecord = nullptr;

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

QByteArray lineOf(const RewriteRecord::Entry &entry)
{
    return line({REWRITE_ENTRY, encoded(entry.path), encoded(entry.backup),
                 QByteArray::number(entry.newContent.size), QByteArray::number(entry.newContent.hash, 16),
                 entry.isBackupKept ? QByteArrayLiteral("kept") : QByteArrayLiteral("deleted")});
}

} // namespace

RewriteRecord::RewriteRecord(const FilePath &folder) : _folder(folder)
{
    currentRecord = this;
}

RewriteRecord::~RewriteRecord()
{
    currentRecord = nullptr;
    if (_descriptor < 0)
        return;
    if (_openBackups.isEmpty())
        (void)FileSystemCalls::current().remove(_path.cString());
    (void)FileSystemCalls::current().close(_descriptor);
}

RewriteRecord *RewriteRecord::current()
{
    return currentRecord;
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

bool RewriteRecord::_open()
{
    if (_descriptor >= 0)
        return true;
    const QString folder = QFile::decodeName(_folder.bytes());
    // Folders above it are the user's own affair; this one is nobody else's.
    if (!QDir().mkpath(QFileInfo(folder).path()) ||
        (::mkdir(_folder.cString(), S_IRWXU) != 0 && errno != EEXIST))
        return false;
    QByteArray name = _folder.appendingPathComponent(QByteArrayLiteral("rewrites-XXXXXX")).bytes();
    const int descriptor = FileSystemCalls::current().makeUniqueFile(name.data());
    if (descriptor < 0)
        return false;
    (void)::fcntl(descriptor, F_SETFL, O_APPEND);
    // Another process that starts just now may have taken the file for one that was left behind.
    struct stat status;
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0 || ::fstat(descriptor, &status) != 0 ||
        status.st_nlink == 0) {
        (void)::close(descriptor);
        return false;
    }
    _path = FilePath(name);
    _descriptor = descriptor;
    (void)flushFolder(_folder);
    return true;
}

bool RewriteRecord::_append(const QByteArray &lines)
{
    return _open() && writeAll(_descriptor, lines) == 0;
}

void RewriteRecord::noteBackup(const FilePath &path, const FilePath &backup)
{
    const QByteArray entry = line({BACKUP_ENTRY, encoded(path), encoded(backup)});
    const std::lock_guard lock(_mutex);
    _openBackups.insert(backup);
    (void)_append(entry);
}

void RewriteRecord::noteRewrites(const std::vector<Entry> &entries)
{
    QByteArray lines;
    for (const Entry &entry : entries)
        lines += lineOf(entry);
    const std::lock_guard lock(_mutex);
    for (const Entry &entry : entries)
        _openBackups.insert(entry.backup);
    if (!lines.isEmpty() && _append(lines))
        (void)FileSystemCalls::current().sync(_descriptor);
}

void RewriteRecord::noteEnds(const std::vector<FilePath> &backups)
{
    QByteArray lines;
    const std::lock_guard lock(_mutex);
    for (const FilePath &backup : backups) {
        if (_openBackups.remove(backup))
            lines += line({END_ENTRY, encoded(backup)});
    }
    if (lines.isEmpty() || _descriptor < 0)
        return;
    // Nothing open is the same as nothing written.
    if (_openBackups.isEmpty())
        (void)FileSystemCalls::current().truncate(_descriptor, 0);
    else
        (void)_append(lines);
}

std::vector<RewriteRecord::LeftEntry> RewriteRecord::leftEntries(const QByteArray &content)
{
    std::vector<LeftEntry> entries;
    QHash<FilePath, size_t> places; // by backup
    for (qsizetype start = 0, end = 0; (end = content.indexOf('\n', start)) >= 0; start = end + 1) {
        const QList<QByteArray> fields = content.mid(start, end - start).split('\t');
        const QByteArray &kind = fields.first();
        if (kind == END_ENTRY && fields.size() == 2) {
            if (const auto place = places.constFind(decoded(fields[1])); place != places.cend())
                entries[*place].path = FilePath();
        } else if ((kind == BACKUP_ENTRY && fields.size() == 3) ||
                   (kind == REWRITE_ENTRY && fields.size() == 6)) {
            LeftEntry entry;
            entry.path = decoded(fields[1]);
            entry.backup = decoded(fields[2]);
            entry.isBegun = kind == REWRITE_ENTRY;
            if (entry.isBegun) {
                entry.newContent = {fields[3].toLongLong(), fields[4].toULongLong(nullptr, 16)};
                entry.isBackupKept = fields[5] == "kept";
            }
            const auto place = places.constFind(entry.backup);
            if (place != places.cend()) {
                entries[*place] = entry;
            } else {
                places.insert(entry.backup, entries.size());
                entries.push_back(entry);
            }
        }
    }
    std::erase_if(entries, [](const LeftEntry &entry) { return entry.path.isEmpty(); });
    return entries;
}

} // namespace tidemark
