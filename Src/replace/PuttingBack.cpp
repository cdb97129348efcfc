#include "replace/PuttingBack.h"

#include "foundation/FileSystemCalls.h"
#include "replace/ContentOverwrite.h"
#include "replace/FileMetadata.h"
#include "replace/OpenRegularFile.h"

#include <cerrno>

namespace tidemark {

PuttingBack::PuttingBack(const std::vector<Rewrite> &rewrites, FailedFlush noteFailedFlush)
    : _noteFailedFlush(std::move(noteFailedFlush))
{
    for (const Rewrite &rewrite : rewrites) {
        _files.emplace_back();
        _files.back().rewrite = rewrite;
    }
}

std::vector<int> PuttingBack::carryOut()
{
    FlushedFileSystems fileSystems;
    for (File &file : _files) {
        const OpenRegularFile found(file.rewrite.path);
        file.isFlushedWithOthers =
            found.isOpen() && fileSystems.addFileSystemOf(file.rewrite.path, found.status().st_dev);
        _keepPresentContent(file);
    }
    const QList<int> descriptors = fileSystems.descriptors();
    int flushError = flushFileSystems(descriptors);
    for (File &file : _files) {
        if (file.errorNumber == 0)
            file.errorNumber =
                file.isFlushedWithOthers && flushError != 0 ? flushError : _overwriteWithOld(file);
    }
    flushError = flushError != 0 ? flushError : flushFileSystems(descriptors);
    std::vector<int> errors;
    for (File &file : _files) {
        if (flushError != 0 && file.isFlushedWithOthers && file.errorNumber == 0) {
            file.errorNumber = flushError;
            _noteFailedFlush(file.rewrite.backup);
        }
        errors.push_back(file.errorNumber);
    }
    return errors;
}

void PuttingBack::_keepPresentContent(File &file)
{
    for (const BackupFile::Kind kind : {BackupFile::Kind::Lasting, BackupFile::Kind::Transient}) {
        const bool isFlushedWithOthers = file.isFlushedWithOthers && kind == BackupFile::Kind::Lasting;
        TDError error;
        BackupFile::Original present;
        file.kept = BackupFile::backupFileOf(
            file.rewrite.path, kind, isFlushedWithOthers ? Flush::No : Flush::Yes,
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
int PuttingBack::_overwriteWithOld(const File &file) const
{
    const Rewrite &rewrite = file.rewrite;
    const OpenRegularFile old(rewrite.backup);
    OpenRegularFile target(rewrite.path, O_RDWR);
    if (!old.isOpen() || !target.isOpen())
        return old.isOpen() ? target.errorNumber() : old.errorNumber();
    (void)FileSystemCalls::current().takeLease(target.descriptor());
    const bool isAsLookedAt = FileState::fromStatus(target.status()) == file.present &&
                              file.present.inode == rewrite.file.inode &&
                              old.digest() == rewrite.oldContent &&
                              (file.kept->content() != rewrite.newContent || rewrite.isUnflushed);
    if (!isAsLookedAt)
        return ESTALE;
    if (const int error = overwriteWithContentOf(old.descriptor(), target.descriptor()); error != 0)
        return error;
    if (!hasContent(target.descriptor(), rewrite.oldContent))
        return EIO;
    copyAttributesAndDates(old.descriptor(), target.descriptor(), old.status());
    if (file.isFlushedWithOthers || target.flush())
        return target.close();
    const int flushError = errno;
    _noteFailedFlush(rewrite.backup);
    return flushError;
}

} // namespace tidemark
