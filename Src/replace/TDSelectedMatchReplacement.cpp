#include "replace/TDSelectedMatchReplacement.h"

#include "foundation/LocalizedText.h"
#include "replace/DeferredBackups.h"

#include <algorithm>

namespace tidemark {

namespace {

constexpr qsizetype LONGEST_FILE_LIST = 1001;

} // namespace

TDSelectedMatchReplacement::TDSelectedMatchReplacement(const ReplaceRequest &request,
                                                       const std::atomic<bool> &stopReplace,
                                                       BetweenFiles betweenFiles)
    : _request(request), _replacement(TDReplacement::withUserDefaults(request.findText, request.replaceText,
                                                                      ReplacementExtent::EveryOccurrence)),
      _stopReplace(stopReplace), _betweenFiles(std::move(betweenFiles))
{}

TDSelectedMatchReplacement::Outcome
TDSelectedMatchReplacement::replaceSelectedMatches(const FindResultItems &selectedObjects)
{
    _outcome = {};
    _currentFile = nullptr;
    DeferredBackups backups;
    _replaceInObjects(selectedObjects);
    _outcome.failedPaths << backups.flush();
    if (_outcome.error.isNull() && !_outcome.failedPaths.isEmpty())
        _outcome.error = failedFilesError(_outcome.failedPaths);
    return _outcome;
}

void TDSelectedMatchReplacement::_replaceInObjects(const FindResultItems &selectedObjects)
{
    for (const auto &item : selectedObjects) {
        if (_stopReplace)
            break;
        if (item->matchLine() == nullptr)
            continue;
        if (item->parent() != _currentFile)
            _changeToFile(item->parent());
        // Events delivered between the files may have asked for the stop.
        if (_stopReplace)
            break;
        if (!_replaceInLine(item))
            return;
    }
    _outcome.stopped = _stopReplace;
    if (!_outcome.stopped)
        _saveCurrentFile();
    // Only the last file's ranges are cleared; ranges that cover an empty replacement elsewhere stay.
    if (!_lastSaveFailed && _lastReplacementLength == 0)
        _clearRangesOfCurrentFile();
}

bool TDSelectedMatchReplacement::_replaceInLine(const std::shared_ptr<TDFindResultItem> &item)
{
    TDMatchLine &line = *item->matchLine();
    _changedItems << item;
    _savedLines << SavedMatchLine(line);
    const ReplacedMatches done = replaceMatches(
        line, _replacement, [this] { return _stopReplace.load(); }, _outcome.error);
    if (done.count > 0)
        _lastReplacementLength = done.lastLength;
    _replacementsInFile += quint64(done.count);
    return _outcome.error.isNull();
}

void TDSelectedMatchReplacement::_changeToFile(TDFindResultItem *file)
{
    _saveCurrentFile();
    _changedItems.clear();
    _savedLines.clear();
    _replacementsInFile = 0;
    _lastSaveFailed = false;
    _currentFile = file;
}

bool TDSelectedMatchReplacement::_hasSomethingToSave() const
{
    if (_currentFile == nullptr)
        return false;
    // Lines can have been left unsaved by an earlier run that was stopped.
    return _replacementsInFile > 0 ||
           std::any_of(_changedItems.begin(), _changedItems.end(), [](const auto &item) {
               return item->matchLine()->matchLineString() != item->matchLine()->savedLineString();
           });
}

void TDSelectedMatchReplacement::_saveCurrentFile()
{
    if (!_hasSomethingToSave())
        return;
    TDError error;
    _lastSaveFailed = !saveToDiskFindResultItem(*_currentFile, _request.isFileInSearchLocations, error);
    if (_lastSaveFailed) {
        for (qsizetype index = 0; index < _changedItems.size(); ++index)
            _savedLines[index].restore(*_changedItems[index]->matchLine());
        _outcome.failedPaths << _currentFile->path();
    } else {
        ++_outcome.filesRewritten;
        _outcome.replacements += _replacementsInFile;
    }
    if (DeferredBackups *backups = DeferredBackups::current(); backups != nullptr && backups->isFull())
        _outcome.failedPaths << backups->flush();
    ++_filesDone;
    if (_betweenFiles)
        _betweenFiles(_filesDone);
}

void TDSelectedMatchReplacement::_clearRangesOfCurrentFile()
{
    for (const auto &item : _changedItems) {
        item->matchLine()->setMatchRanges({});
        item->matchLine()->setHighlightedMatchIndex(TD_NO_HIGHLIGHTED_MATCH);
        item->matchLine()->updateMatchLineAttributeString();
    }
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
