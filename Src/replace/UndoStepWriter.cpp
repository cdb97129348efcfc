#include "replace/UndoStepWriter.h"

#include "foundation/FileSystemCalls.h"
#include "foundation/UniqueFile.h"
#include "replace/FileMetadata.h"
#include "replace/NewContent.h"
#include "replace/RewriteRecord.h"
#include "replace/UndoStepFiles.h"

#include <cerrno>
#include <sys/stat.h>

namespace tidemark {

using namespace UndoStepFormat;

UndoStepWriter::UndoStepWriter(UndoJournal journal, UndoStepHeader header, Purpose purpose)
    : _journal(std::move(journal)), _header(std::move(header)), _purpose(purpose)
{
    _header.owner = undoStepOwner(identityOfThisProcess());
}

UndoStepWriter::~UndoStepWriter()
{
    (void)close();
}

int UndoStepWriter::append(const std::vector<UndoEntry> &entries, const std::vector<KeptBackup> &backups)
{
    if (!isOpen() || entries.empty())
        return 0;
    const std::optional<QByteArray> block = filesBlock(entries);
    if (!block || !_journal.hasRoomFor(_step.size + block->size())) {
        giveUp(UndoKeeping::TooLarge);
        return 0;
    }
    if (_purpose == Purpose::Replacement && !_step.descriptor.isOpen())
        _journal._clearRedoSteps();
    const QByteArray prefix = _header.kind == UndoStepKind::Undo ? UNDO_PREFIX : REDO_PREFIX;
    if (const int error = _appendTo(_step, prefix, *block); error != 0)
        return _giveUpAfter(error);
    _keeping = UndoKeeping::Kept;
    _appended.files += qint64(entries.size());
    for (const UndoEntry &entry : entries)
        _appended.matches += entry.matches;
    // Without the list they only have to be deleted by hand.
    if (!backups.empty())
        (void)_appendTo(_backups, KEPT_PREFIX, backupsBlock(backups));
    return 0;
}

/// 0, or errno.
int UndoStepWriter::_begin(File &file, const QByteArray &prefix)
{
    if (!makeUserFolder(_journal.folder()))
        return errno;
    QByteArray path =
        _journal.folder().appendingPathComponent(templateForUndoStepFile(_journal.folder(), prefix)).bytes();
    file.descriptor = makeUniqueFile(path);
    if (!file.descriptor.isOpen())
        return errno;
    file.path = FilePath(path);
    if (!lockedPatiently([&file] { return file.lock.take(file.descriptor.number(), file.path); }))
        return EAGAIN;
    const QByteArray start = SIGNATURE.toByteArray() + headerBlock(_header);
    file.size = start.size();
    return writeAll(file.descriptor.number(), start);
}

/// Appends a block; 0, or errno.
int UndoStepWriter::_appendTo(File &file, const QByteArray &prefix, const QByteArray &block)
{
    int error = file.descriptor.isOpen() ? 0 : _begin(file, prefix);
    if (error == 0)
        error = writeAll(file.descriptor.number(), block);
    file.size += block.size();
    file.isFlushed = false;
    return error;
}

/// What is to be told of a write that failed.
int UndoStepWriter::_giveUpAfter(int error)
{
    giveUp(UndoKeeping::Failed);
    return error == EIO ? error : 0;
}

int UndoStepWriter::flush(const QList<quint64> &flushedFileSystems)
{
    if (!isOpen())
        return 0;
    (void)_flush(_backups, flushedFileSystems);
    const int error = _flush(_step, flushedFileSystems);
    return error != 0 ? _giveUpAfter(error) : 0;
}

/// 0, or errno.
int UndoStepWriter::_flush(File &file, const QList<quint64> &flushedFileSystems)
{
    if (!file.descriptor.isOpen() || file.isFlushed)
        return 0;
    struct stat status;
    if (::fstat(file.descriptor.number(), &status) != 0)
        return errno;
    if (!flushedFileSystems.contains(status.st_dev)) {
        if (FileSystemCalls::current().sync(file.descriptor.number()) != 0)
            return errno;
        if (const int error = file.isFolderFlushed ? 0 : flushFolder(_journal.folder()); error != 0)
            return error;
    }
    file.isFlushed = file.isFolderFlushed = true;
    return 0;
}

void UndoStepWriter::_end(File &file, bool isKept)
{
    if (!file.descriptor.isOpen())
        return;
    if (!isKept)
        (void)FileSystemCalls::current().remove(file.path.cString());
    (void)file.descriptor.close();
    file.lock = {};
}

void UndoStepWriter::giveUp(UndoKeeping reason)
{
    if (!isOpen())
        return;
    _keeping = reason;
    _end(_step, false);
}

void UndoStepWriter::noteDone(qint64 matches)
{
    ++_done.files;
    _done.matches += matches;
}

UndoKeeping UndoStepWriter::close()
{
    const bool wasBegun = _step.descriptor.isOpen() || _backups.descriptor.isOpen();
    const bool isAboutNothing = _done.files == 0;
    if (_keeping == UndoKeeping::Kept && isAboutNothing)
        _keeping = UndoKeeping::Nothing;
    const bool isWhole = _done.files == _appended.files && _done.matches == _appended.matches;
    // Should this fail, the journal tells of more than was changed.
    if (_step.descriptor.isOpen() && !isAboutNothing && !isWhole)
        (void)writeAll(_step.descriptor.number(), totalsBlock(_done.files, _done.matches));
    _end(_step, !isAboutNothing);
    _end(_backups, !isAboutNothing);
    if (wasBegun)
        _journal._trim();
    return _keeping;
}

QByteArray UndoStepWriter::id() const
{
    return _keeping == UndoKeeping::Kept ? _step.path.lastPathComponent() : QByteArray();
}

} // namespace tidemark
