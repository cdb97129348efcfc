#include "replace/UndoJournal.h"

#include "foundation/BackupName.h"
#include "foundation/Descriptor.h"
#include "foundation/FileSystemCalls.h"
#include "foundation/UserDefaults.h"
#include "replace/RewriteRecord.h"
#include "replace/UndoStepFiles.h"
#include "replace/UndoStepReader.h"
#include "replace/UndoStepWriter.h"

#include <QSet>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark {

namespace {

constexpr qint64 BYTES_OF_MEGABYTE = 1000 * 1000;
/// What a file takes besides its path, and a match besides its text, at most.
constexpr qint64 BYTES_OF_FILE = 64;
constexpr qint64 BYTES_OF_MATCH = 6;

/// An empty step may have been made just now, to be locked and written. An older one is nobody's.
constexpr time_t SECONDS_UNTIL_ABANDONED = 3600;

FilePath folderOfJournal;

UndoStepKind kindOf(const QByteArray &name)
{
    return name.startsWith(REDO_PREFIX) ? UndoStepKind::Redo : UndoStepKind::Undo;
}

std::unique_ptr<UndoStepReader> openStep(const FilePath &folder, const QByteArray &name)
{
    return UndoStepReader::open(folder.appendingPathComponent(name), kindOf(name));
}

/// False when somebody else has it or it can't be removed.
bool removeStep(const FilePath &folder, const QByteArray &name)
{
    const FilePath path = folder.appendingPathComponent(name);
    FileSystemCalls &calls = FileSystemCalls::current();
    RecordLock lock;
    const Descriptor file(calls.open(path.cString(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0));
    return file.isOpen() && lock.take(file.number(), path) && calls.remove(path.cString()) == 0;
}

bool isThere(const KeptBackup &backup)
{
    struct stat status;
    return isBackupName(backup.path.lastPathComponent()) && ::lstat(backup.path.cString(), &status) == 0 &&
           S_ISREG(status.st_mode) && status.st_ino == backup.inode && status.st_size == backup.content.size;
}

/// 0, or errno. Numbers of devices change from start to start, so they tell nothing.
int deleteBackup(const KeptBackup &backup)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    if (!isThere(backup))
        return ::access(backup.path.cString(), F_OK) != 0 ? errno : ESTALE;
    Descriptor file(calls.open(backup.path.cString(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0));
    if (!file.isOpen())
        return errno;
    const std::optional<FileState> state = stateOfDescriptor(file.number());
    const bool isTheOne =
        state && state->inode == ino_t(backup.inode) && hasContent(file.number(), backup.content);
    (void)file.close();
    if (!isTheOne)
        return ESTALE;
    return calls.remove(backup.path.cString()) == 0 ? 0 : errno;
}

} // namespace

quint64 undoStepOwner(const QByteArray &processIdentity)
{
    return digestOfBytes(processIdentity).hash;
}

FilePath UndoJournal::userFolder()
{
    return RewriteRecord::userFolder().appendingPathComponent(QByteArrayLiteral("undo"));
}

std::optional<UndoJournal> UndoJournal::current()
{
    const qint64 megabytes = UserDefaults::standard().integerForKey(TD_USER_DEFAULTS_NAME_UNDO_JOURNAL_SIZE);
    if (folderOfJournal.isEmpty() || megabytes <= 0)
        return {};
    constexpr qint64 MOST = qint64(1) << 20;
    return UndoJournal(folderOfJournal, std::min(megabytes, MOST) * BYTES_OF_MEGABYTE);
}

QList<UndoStep> UndoJournal::steps() const
{
    QList<UndoStep> steps;
    for (const QByteArray &name : undoStepFilesIn(_folder)) {
        const auto reader = name.startsWith(KEPT_PREFIX) ? nullptr : openStep(_folder, name);
        if (!reader)
            continue;
        UndoStep step = reader->step();
        step.id = name;
        step.isInUse = !reader->lock();
        steps.prepend(step);
    }
    return steps;
}

std::optional<UndoStep> UndoJournal::lastStep(UndoStepKind kind) const
{
    for (const UndoStep &step : steps()) {
        if (step.kind == kind && step.files > 0)
            return step;
    }
    return {};
}

std::optional<UndoStep> UndoJournal::lastStepOf(const QList<QByteArray> &processIdentities) const
{
    QSet<quint64> owners;
    for (const QByteArray &identity : processIdentities)
        owners.insert(undoStepOwner(identity));
    for (const UndoStep &step : steps()) {
        if (owners.contains(step.owner) && step.files > 0 && !step.isInUse)
            return step;
    }
    return {};
}

bool UndoJournal::forget(const QByteArray &id) const
{
    return isUndoStepFile(id) && removeStep(_folder, id);
}

QList<FilePath> UndoJournal::filesOf(const QByteArray &id) const
{
    QList<FilePath> paths;
    const auto reader = isUndoStepFile(id) ? openStep(_folder, id) : nullptr;
    QSet<FilePath> known;
    for (size_t block = 0; reader && block < reader->blockCount(); ++block) {
        for (const UndoEntry &entry : reader->entries(block)) {
            if (!known.contains(entry.path))
                paths << entry.path;
            known.insert(entry.path);
        }
    }
    return paths;
}

qint64 UndoSizeEstimate::of(const LinesByFile &lines)
{
    UndoSizeEstimate estimate;
    for (const auto &[file, ofFile] : lines) {
        estimate.addFile(*file);
        for (const auto &line : ofFile)
            estimate.addLine(*line->matchLine());
    }
    return estimate.bytes();
}

void UndoSizeEstimate::addFile(const TDFindResultItem &file)
{
    _bytes += BYTES_OF_FILE + file.path().bytes().size();
}

void UndoSizeEstimate::addLine(const TDMatchLine &line)
{
    for (const TextRange &range : line.matchRangesInPlace())
        _bytes += BYTES_OF_MATCH + range.length * qint64(sizeof(char16_t));
}

std::unique_ptr<UndoStepWriter> UndoJournal::newStep(const QString &findText,
                                                     const QString &replaceText) const
{
    return std::make_unique<UndoStepWriter>(
        *this, UndoStepHeader{UndoStepKind::Undo, QDateTime::currentDateTimeUtc(), findText, replaceText, 0},
        UndoStepWriter::Purpose::Replacement);
}

QList<BackupRun> UndoJournal::backupRuns() const
{
    QList<BackupRun> runs;
    for (const QByteArray &name : undoStepFilesIn(_folder)) {
        const auto reader = name.startsWith(KEPT_PREFIX) ? openStep(_folder, name) : nullptr;
        if (!reader)
            continue;
        BackupRun run{reader->step(), name, {}};
        const auto isAnyThere = [&run, &reader] {
            run.backups.clear();
            for (const KeptBackup &backup : reader->backups()) {
                if (isThere(backup))
                    run.backups << backup;
            }
            return !run.backups.isEmpty();
        };
        if (isAnyThere())
            runs.prepend(run);
        else if (!reader->step().isDamaged && reader->lock() && !isAnyThere())
            (void)FileSystemCalls::current().remove(_folder.appendingPathComponent(name).cString());
    }
    return runs;
}

QList<UndoJournal::BackupFailure> UndoJournal::deleteBackups(const QList<KeptBackup> &backups)
{
    QList<BackupFailure> failures;
    for (const KeptBackup &backup : backups) {
        if (const int error = deleteBackup(backup); error != 0)
            failures.append({backup, error});
    }
    return failures;
}

void UndoJournal::_clearRedoSteps() const
{
    for (const QByteArray &name : undoStepFilesIn(_folder)) {
        if (name.startsWith(REDO_PREFIX))
            (void)removeStep(_folder, name);
    }
}

/// Removes what a process that ended began and never wrote, and then the oldest until the rest fits.
void UndoJournal::_trim() const
{
    std::vector<std::pair<QByteArray, qint64>> files;
    qint64 size = 0;
    for (const QByteArray &name : undoStepFilesIn(_folder)) {
        struct stat status;
        if (::lstat(_folder.appendingPathComponent(name).cString(), &status) != 0)
            continue;
        if (status.st_size == 0 && status.st_mtime + SECONDS_UNTIL_ABANDONED < ::time(nullptr)) {
            (void)removeStep(_folder, name);
            continue;
        }
        files.emplace_back(name, status.st_size);
        size += status.st_size;
    }
    for (const auto &[name, sizeOfFile] : files) {
        if (size <= _sizeLimit)
            break;
        if (removeStep(_folder, name))
            size -= sizeOfFile;
    }
}

UndoJournalFolder::UndoJournalFolder(const FilePath &folder)
{
    folderOfJournal = folder;
}

UndoJournalFolder::~UndoJournalFolder()
{
    folderOfJournal = {};
}

UndoWalk::UndoWalk() = default;

UndoWalk::~UndoWalk()
{
    (void)end();
}

const std::shared_ptr<UndoStepWriter> &UndoWalk::step(const QString &findText, const QString &replaceText)
{
    if (_writer && (findText != _findText || replaceText != _replaceText))
        (void)end();
    if (const auto journal = _writer ? std::nullopt : UndoJournal::current()) {
        _writer = journal->newStep(findText, replaceText);
        _findText = findText;
        _replaceText = replaceText;
    }
    return _writer;
}

QByteArray UndoWalk::end()
{
    const std::shared_ptr<UndoStepWriter> writer = std::exchange(_writer, {});
    if (writer)
        (void)writer->close();
    return writer ? writer->id() : QByteArray();
}

} // namespace tidemark
