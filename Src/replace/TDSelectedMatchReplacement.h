#pragma once

#include "foundation/TDError.h"
#include "matching/TDFindResultItem.h"
#include "replace/LinesByFile.h"
#include "replace/MatchLineReplacement.h"
#include "replace/RewriteRun.h"
#include "replace/TDReplaceEngine.h"

#include <QHash>
#include <QList>

#include <atomic>
#include <functional>
#include <memory>

namespace tidemark {

/// Replaces every match of the selected match lines, saving each file once after its lines are changed.
class TDSelectedMatchReplacement
{
public:
    /// A file that couldn't be saved.
    struct FileFailure
    {
        FilePath path;
        RewriteProblem problem;
        TDError error;
        FilePath backup; ///< holds the old content; empty: the file is as it was, or as it should be
    };
    struct Outcome
    {
        /// In the order met. The lines of files that are as they were are back as they were, too.
        std::vector<FileFailure> failures;
        QList<FilePath> failedPaths() const;
        quint64 filesRewritten = 0;
        quint64 replacements = 0;
        /// Matches whose replacement is what stands there already; files with no others aren't written.
        quint64 unchangedFiles = 0;
        quint64 unchangedMatches = 0;
        bool stopped = false;
        /// Whether the run can be undone, and by which step of the journal.
        UndoKeeping undo = UndoKeeping::Off;
        QByteArray undoStep;
        /// For the user: one summary of all failed files, or the faulty expression that ended the run.
        TDError error;
    };

    /// Called between two files, now and then within a long one, and while the disk is waited for, with the
    /// number of files done; may deliver events.
    using BetweenFiles = std::function<void(quint64 filesDone)>;

    /// `stopReplace` is looked at before every line and every match.
    TDSelectedMatchReplacement(const ReplaceRequest &request, const std::atomic<bool> &stopReplace,
                               BetweenFiles betweenFiles = {});

    /// In the order of the lines, which aren't looked at any more after a stop or a faulty expression. Files
    /// are written in groups; the one in hand then, and those whose group isn't being written at a stop, are
    /// as they were, with their lines.
    Outcome replaceSelectedMatches(const LinesByFile &selectedLines);

    /// The error that lists files which couldn't be updated.
    static TDError failedFilesError(const QList<FilePath> &failedPaths);

private:
    /// What was done to one file's lines.
    struct ChangedFile
    {
        TDFindResultItem *file = nullptr;
        FindResultItems lines;            ///< to be replaced in
        QList<SavedMatchLine> savedLines; ///< of the first of these: those that were replaced in
        quint64 replacements = 0;
        bool hasFailed = false;

        ChangedFile() = default;
        /// Doesn't wait until very many lines are gone.
        ~ChangedFile();
        ChangedFile(const ChangedFile &) = delete;
        ChangedFile &operator=(const ChangedFile &) = delete;
        void restoreLines();
        bool hasSomethingToSave() const;
    };

    void _beginUndoStep(const LinesByFile &selectedLines);
    void _replaceInFiles(const LinesByFile &selectedLines);
    bool _replaceInFile();
    bool _replaceInLine(TDMatchLine &line);
    void _changeToFile(const LinesByFile::Group &group);
    void _lookUp() const;
    void _saveCurrentFile();
    void _fileIsDone(ChangedFile &changed, const FileRewrite &rewrite, bool isRewritten);
    void _fileHasFailed(ChangedFile &changed, const FileRewrite &rewrite);
    void _noteLateProblem(const RewriteRun::LateProblem &late);
    void _abandonCurrentFile();
    void _abandonWaitingFiles();
    void _clearRangesOfCurrentFile();

    ReplaceRequest _request;
    TDReplacement _replacement;
    const std::atomic<bool> &_stopReplace;
    BetweenFiles _betweenFiles;

    Outcome _outcome;
    std::shared_ptr<ChangedFile> _current;
    QHash<TDFindResultItem *, std::shared_ptr<ChangedFile>> _waitingFiles;
    QHash<FilePath, std::pair<TDFindResultItem *, quint64>> _rewritten; ///< replacements, by resolved path
    qint64 _lastReplacementLength = -1;                                 ///< -1 before the first replacement
    quint64 _filesDone = 0;
    std::shared_ptr<UndoStepWriter> _undoStep;
    std::unique_ptr<RewriteRun> _run;
};

} // namespace tidemark
