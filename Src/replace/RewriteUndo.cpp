#include "replace/RewriteUndo.h"

#include "foundation/FileSystemCalls.h"
#include "replace/TDSelectedMatchReplacement.h"
#include "replace/UndoChains.h"
#include "replace/UndoStepFiles.h"
#include "replace/UndoStepReader.h"
#include "replace/UndoStepWriter.h"

#include <algorithm>
#include <unistd.h>

namespace tidemark {

namespace {

UndoStepHeader headerForWayBack(UndoStepHeader header)
{
    header.kind = header.kind == UndoStepKind::Undo ? UndoStepKind::Redo : UndoStepKind::Undo;
    return header;
}

} // namespace

RewriteUndo::RewriteUndo(UndoJournal journal, const std::atomic<bool> &stop, BetweenFiles betweenFiles)
    : _journal(std::move(journal)), _stop(stop), _betweenFiles(std::move(betweenFiles))
{}

RewriteUndo::Outcome RewriteUndo::takeBack(const QByteArray &stepId)
{
    _outcome = {};
    const FilePath path = _journal.folder().appendingPathComponent(stepId);
    if (!isUndoStepFile(stepId) || stepId.startsWith(KEPT_PREFIX) || ::access(path.cString(), F_OK) != 0) {
        _outcome.end = End::NoStep;
        return _outcome;
    }
    const auto reader =
        UndoStepReader::open(path, stepId.startsWith(REDO_PREFIX) ? UndoStepKind::Redo : UndoStepKind::Undo);
    if (!reader || !lockedPatiently([&reader] { return reader->lock(); })) {
        _outcome.end = reader ? End::InUse : End::Unreadable;
        return _outcome;
    }
    const auto writer = std::make_shared<UndoStepWriter>(_journal, headerForWayBack(reader->step()),
                                                         UndoStepWriter::Purpose::TakingBack);
    _takeBackFiles(*reader, writer);
    _endStep(*reader, path);
    _outcome.keeping = writer->close();
    _outcome.newStep = writer->id();
    return _outcome;
}

void RewriteUndo::_takeBackFiles(UndoStepReader &reader, const std::shared_ptr<UndoStepWriter> &writer)
{
    UndoChains chains(reader);
    _fileCount = chains.count();
    _matchesLeft = reader.step().matches;
    const auto whileWaiting = [this] {
        if (_betweenFiles)
            _betweenFiles(quint64(_outcome.files.size()));
    };
    RewriteRun run(_fileCount > 1 ? RewriteRun::Flushing::FileSystem : RewriteRun::Flushing::EachFile,
                   _fileCount, whileWaiting, [this] { return _stop.load(); });
    run.setUndoStep(writer);
    while (!_stop) {
        std::vector<UndoEntry> chain = chains.next();
        if (chain.empty())
            break;
        FileRewrite::Request request;
        request.path = chain.front().path;
        request.transientBackupFile = chain.front().isBackupTransient;
        for (const UndoEntry &entry : chain)
            request.matches += entry.matches;
        request.undone = std::move(chain);
        run.add(std::move(request),
                [this](const FileRewrite &rewrite, bool isRewritten) { _fileIsDone(rewrite, isRewritten); });
    }
    if (!_stop)
        run.flush();
    run.abandonWaiting();
    for (const RewriteRun::LateProblem &late : run.finish())
        _noteLateProblem(late);
}

void RewriteUndo::_fileIsDone(const FileRewrite &rewrite, bool isRewritten)
{
    File file;
    file.path = rewrite.path();
    file.isChanged = isRewritten;
    file.isDone = isRewritten || rewrite.isUnchanged();
    if (isRewritten) {
        file.newDate = rewrite.newModificationDate();
        _outcome.matches += rewrite.matches();
    } else if (!file.isDone) {
        file.problem = rewrite.problem();
        file.error = rewrite.error();
        file.backup = rewrite.backup();
    }
    if (!_mayBeTriedAgain(file))
        _matchesLeft -= rewrite.matches();
    _outcome.files.push_back(std::move(file));
    if (_betweenFiles)
        _betweenFiles(quint64(_outcome.files.size()));
}

/// Of a file that counts as done so far.
void RewriteUndo::_noteLateProblem(const RewriteRun::LateProblem &late)
{
    for (File &file : _outcome.files) {
        if (file.path != late.path || !file.isDone)
            continue;
        file.problem = late.problem;
        file.error = late.error;
        file.backup = late.backup;
        file.isDone = late.problem != RewriteProblem::NotOnDisk;
    }
}

/// Whether a file was held up by something that passes, rather than by what it holds.
bool RewriteUndo::_mayBeTriedAgain(const File &file)
{
    switch (file.problem) {
    case RewriteProblem::NotPermitted:
    case RewriteProblem::NoRoom:
    case RewriteProblem::NoBackup:
    case RewriteProblem::NoRecord:
    case RewriteProblem::DiskFailure:
    case RewriteProblem::NotOnDisk:
    case RewriteProblem::NotBegun:
        return true;
    case RewriteProblem::Missing:
        // Without its folder the disk may just not be there.
        return ::access(file.path.deletingLastPathComponent().cString(), F_OK) != 0;
    default:
        return false;
    }
}

void RewriteUndo::_endStep(UndoStepReader &reader, const FilePath &path)
{
    QList<FilePath> refused;
    qint64 filesLeft = _fileCount - qint64(_outcome.files.size());
    _outcome.end = filesLeft > 0 ? End::Stopped : End::Complete;
    for (const File &file : _outcome.files) {
        _outcome.filesDone += file.isDone && file.isChanged ? 1 : 0;
        filesLeft += _mayBeTriedAgain(file) ? 1 : 0;
        if (!file.isDone)
            refused << file.path;
    }
    _outcome.filesRefused = refused.size();
    if (!refused.isEmpty())
        _outcome.error = TDSelectedMatchReplacement::failedFilesError(refused);
    // Files that were changed or moved for a moment may come back; who doesn't think so forgets the step.
    const bool isUntouched = _outcome.filesDone == 0 && !refused.isEmpty();
    _outcome.isStepLeft = filesLeft > 0 || isUntouched;
    _outcome.isStepDamaged = reader.step().isDamaged;
    if (isUntouched)
        return;
    if (filesLeft > 0)
        reader.noteTotals(filesLeft, std::max<qint64>(_matchesLeft, 0));
    else
        (void)FileSystemCalls::current().remove(path.cString());
}

} // namespace tidemark
