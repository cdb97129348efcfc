#pragma once

#include "foundation/TDError.h"
#include "matching/TDFindResultItem.h"
#include "replace/MatchLineReplacement.h"
#include "replace/TDReplaceEngine.h"

#include <QList>

#include <atomic>
#include <functional>

namespace tidemark {

/// Replaces every match of the selected match lines, saving each file once after its lines are changed.
class TDSelectedMatchReplacement
{
public:
    struct Outcome
    {
        /// Files that couldn't be saved, in the order met; their lines are back as they were.
        QList<FilePath> failedPaths;
        quint64 filesRewritten = 0;
        quint64 replacements = 0;
        bool stopped = false;
        /// For the user: one summary of all failed files, or the faulty expression that ended the run.
        TDError error;
    };

    /// Called between two files with the number of files done; may deliver events.
    using BetweenFiles = std::function<void(quint64 filesDone)>;

    /// `stopReplace` is looked at before every line and every match.
    TDSelectedMatchReplacement(const ReplaceRequest &request, const std::atomic<bool> &stopReplace,
                               BetweenFiles betweenFiles = {});

    /// The selected nodes in selection order; only match lines among them are replaced in. The list isn't
    /// looked at any more after a stop or a faulty expression: the lines of the file in hand then stay
    /// changed in memory only.
    Outcome replaceSelectedMatches(const FindResultItems &selectedObjects);

    /// The error that lists files which couldn't be updated.
    static TDError failedFilesError(const QList<FilePath> &failedPaths);

private:
    void _replaceInObjects(const FindResultItems &selectedObjects);
    bool _replaceInLine(const std::shared_ptr<TDFindResultItem> &item);
    void _changeToFile(TDFindResultItem *file);
    bool _hasSomethingToSave() const;
    void _saveCurrentFile();
    void _clearRangesOfCurrentFile();

    ReplaceRequest _request;
    TDReplacement _replacement;
    const std::atomic<bool> &_stopReplace;
    BetweenFiles _betweenFiles;

    Outcome _outcome;
    TDFindResultItem *_currentFile = nullptr;
    FindResultItems _changedItems;
    QList<SavedMatchLine> _savedLines; ///< one for each of _changedItems
    bool _lastSaveFailed = false;
    qint64 _lastReplacementLength = -1; ///< -1 before the first replacement
    quint64 _filesDone = 0;
    quint64 _replacementsInFile = 0;
};

} // namespace tidemark
