#include "replace/TDSelectedMatchReplacement.h"

#include "foundation/FreedMemory.h"
#include "foundation/LocalizedText.h"
#include "replace/SaveToDisk.h"

#include <algorithm>

namespace tidemark {

namespace {

constexpr qsizetype LONGEST_FILE_LIST = 1001;
constexpr qsizetype LINES_BETWEEN_EVENTS = 256;
/// So many are gone within a few milliseconds.
constexpr qsizetype LINES_RELEASED_AT_ONCE = 10000;

} // namespace

TDSelectedMatchReplacement::TDSelectedMatchReplacement(const ReplaceRequest &request,
                                                       const std::atomic<bool> &stopReplace,
                                                       BetweenFiles betweenFiles)
    : _request(request), _replacement(request.findText, request.replaceText, request.options,
                                      ReplacementExtent::EveryOccurrence),
      _stopReplace(stopReplace), _betweenFiles(std::move(betweenFiles))
{}

TDSelectedMatchReplacement::ChangedFile::~ChangedFile()
{
    if (savedLines.size() < LINES_RELEASED_AT_ONCE)
        return;
    releaseElsewhere(std::move(lines));
    releaseElsewhere(std::move(savedLines));
}

void TDSelectedMatchReplacement::ChangedFile::restoreLines()
{
    for (qsizetype index = 0; index < savedLines.size(); ++index)
        savedLines[index].restore(*lines[index]->matchLine());
}

bool TDSelectedMatchReplacement::ChangedFile::hasSomethingToSave() const
{
    // Lines can have been left unsaved by an earlier run that was stopped.
    return replacements > 0 || std::any_of(lines.begin(), lines.begin() + savedLines.size(),
                                           [](const auto &line) { return line->matchLine()->isUnsaved(); });
}

TDSelectedMatchReplacement::Outcome
TDSelectedMatchReplacement::replaceSelectedMatches(const LinesByFile &selectedLines)
{
    _outcome = {};
    _current = std::make_shared<ChangedFile>();
    _run = std::make_unique<RewriteRun>(
        RewriteRun::Flushing::FileSystem, qint64(selectedLines.size()), [this] { _lookUp(); },
        [this] { return _stopReplace.load(); });
    _lookUp();
    // This goes through millions of lines.
    _beginUndoStep(selectedLines);
    _lookUp();
    _replaceInFiles(selectedLines);
    for (const RewriteRun::LateProblem &late : _run->finish())
        _noteLateProblem(late);
    if (_undoStep) {
        _outcome.undo = _undoStep->close();
        _outcome.undoStep = _undoStep->id();
    }
    if (_outcome.error.isNull() && !_outcome.failures.empty())
        _outcome.error = failedFilesError(_outcome.failedPaths());
    return _outcome;
}

void TDSelectedMatchReplacement::_beginUndoStep(const LinesByFile &selectedLines)
{
    _undoStep.reset();
    const std::optional<UndoJournal> journal = UndoJournal::current();
    if (!journal)
        return;
    // What was said to be too large before isn't kept either when it turns out smaller.
    if (!journal->hasRoomFor(UndoSizeEstimate::of(selectedLines))) {
        _outcome.undo = UndoKeeping::TooLarge;
        return;
    }
    _undoStep = journal->newStep(_request.findText, _request.replaceText);
    _run->setUndoStep(_undoStep);
}

void TDSelectedMatchReplacement::_replaceInFiles(const LinesByFile &selectedLines)
{
    for (const LinesByFile::Group &group : selectedLines) {
        if (_stopReplace)
            break;
        _changeToFile(group);
        if (!_replaceInFile()) {
            _abandonCurrentFile();
            _run->flush();
            _abandonWaitingFiles();
            return;
        }
    }
    if (_stopReplace) {
        _abandonCurrentFile();
    } else {
        _saveCurrentFile();
        _run->flush();
    }
    _outcome.stopped = _stopReplace;
    _abandonWaitingFiles();
    // Only the last file's ranges are cleared; ranges that cover an empty replacement elsewhere stay.
    if (!_current->hasFailed && _lastReplacementLength == 0)
        _clearRangesOfCurrentFile();
}

/// False when the expression turns out to be faulty.
bool TDSelectedMatchReplacement::_replaceInFile()
{
    for (const auto &line : std::as_const(_current->lines)) {
        // Events may have asked for the stop.
        if (_stopReplace)
            break;
        if (!_replaceInLine(*line->matchLine()))
            return false;
    }
    return true;
}

bool TDSelectedMatchReplacement::_replaceInLine(TDMatchLine &line)
{
    if (_current->savedLines.size() % LINES_BETWEEN_EVENTS == LINES_BETWEEN_EVENTS - 1)
        _lookUp();
    _current->savedLines << SavedMatchLine(line);
    const ReplacedMatches done = replaceMatches(
        line, _replacement, [this] { return _stopReplace.load(); }, _outcome.error);
    if (done.count > 0)
        _lastReplacementLength = done.lastLength;
    _current->replacements += quint64(done.count);
    return _outcome.error.isNull();
}

/// What happened meanwhile is seen to.
void TDSelectedMatchReplacement::_lookUp() const
{
    sortFreedMemory();
    if (_betweenFiles)
        _betweenFiles(_filesDone);
}

void TDSelectedMatchReplacement::_changeToFile(const LinesByFile::Group &group)
{
    _saveCurrentFile();
    // Its lines are on their way to the disk and may not change meanwhile.
    if (_waitingFiles.contains(group.file))
        _run->flush();
    _current = std::make_shared<ChangedFile>();
    _current->file = group.file;
    _current->lines = group.lines;
    // Moving millions of them takes long; room that stays empty costs nothing.
    _current->savedLines.reserve(group.lines.size());
}

void TDSelectedMatchReplacement::_saveCurrentFile()
{
    TDFindResultItem *file = _current->file;
    if (file == nullptr || file->matches() == nullptr || !_current->hasSomethingToSave())
        return;
    _waitingFiles.insert(file, _current);
    FileRewrite::Request request = rewriteRequest(*file, file->matches()->lines,
                                                  _request.isFileInSearchLocations, [this] { _lookUp(); });
    request.matches = qint64(_current->replacements);
    _run->add(std::move(request), [this, changed = _current](const FileRewrite &rewrite, bool isRewritten) {
        _fileIsDone(*changed, rewrite, isRewritten);
    });
}

void TDSelectedMatchReplacement::_fileIsDone(ChangedFile &changed, const FileRewrite &rewrite,
                                             bool isRewritten)
{
    TDFindResultItem &file = *changed.file;
    _waitingFiles.remove(&file);
    if (isRewritten) {
        noteSavedLines(file, file.matches()->lines, [this] { _lookUp(); });
        file.setModificationDate(rewrite.newModificationDate());
        file.setRemark({});
        ++_outcome.filesRewritten;
        _outcome.replacements += changed.replacements;
        _rewritten.insert(rewrite.path(), {&file, changed.replacements});
    } else if (rewrite.isUnchanged()) {
        file.setRemark({});
        ++_outcome.unchangedFiles;
        _outcome.unchangedMatches += changed.replacements;
    } else {
        _fileHasFailed(changed, rewrite);
    }
    ++_filesDone;
    _lookUp();
}

void TDSelectedMatchReplacement::_fileHasFailed(ChangedFile &changed, const FileRewrite &rewrite)
{
    changed.hasFailed = true;
    changed.restoreLines();
    changed.file->setRemark(textOfProblem(rewrite.problem()));
    _outcome.failures.push_back({changed.file->path(), rewrite.problem(), rewrite.error(), rewrite.backup()});
}

/// Of a file that counts as rewritten so far.
void TDSelectedMatchReplacement::_noteLateProblem(const RewriteRun::LateProblem &late)
{
    const auto [file, replacements] = _rewritten.value(late.path);
    file->setRemark(textOfProblem(late.problem));
    _outcome.failures.push_back({file->path(), late.problem, late.error, late.backup});
    if (late.problem != RewriteProblem::NotOnDisk)
        return;
    --_outcome.filesRewritten;
    _outcome.replacements -= replacements;
}

/// What it would have become isn't for a later run to write, perhaps after this one was undone.
void TDSelectedMatchReplacement::_abandonCurrentFile()
{
    _current->hasFailed = true;
    _current->restoreLines();
}

/// Those that a stop left.
void TDSelectedMatchReplacement::_abandonWaitingFiles()
{
    _run->abandonWaiting();
    for (const auto &changed : std::as_const(_waitingFiles)) {
        changed->hasFailed = true;
        changed->restoreLines();
    }
    _waitingFiles.clear();
}

void TDSelectedMatchReplacement::_clearRangesOfCurrentFile()
{
    for (qsizetype index = 0; index < _current->savedLines.size(); ++index) {
        TDMatchLine &line = *_current->lines[index]->matchLine();
        line.setMatchRanges({});
        line.setHighlightedMatchIndex(TD_NO_HIGHLIGHTED_MATCH);
    }
}

QList<FilePath> TDSelectedMatchReplacement::Outcome::failedPaths() const
{
    QList<FilePath> paths;
    for (const FileFailure &failure : failures)
        paths << failure.path;
    return paths;
}

TDError TDSelectedMatchReplacement::failedFilesError(const QList<FilePath> &failedPaths)
{
    QString names;
    for (const FilePath &path : failedPaths) {
        if (names.size() >= LONGEST_FILE_LIST) {
            names += localizedString("\n\nToo many files to list.");
            break;
        }
        if (!names.isEmpty())
            names += QStringLiteral(", ");
        names += FilePath(path.lastPathComponent()).displayText();
    }
    return TDError::initalizePresentErrorWithCode(
        TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_NOT_WRITABLE_ERROR,
        localizedString(
            "Sorry, it was not possible to update the following files due to file permissions or locks:"),
        names,
        localizedString(
            "Review the permissions, ownership and lock status of the above files and peform the search "
            "and replace again."));
}

} // namespace tidemark
