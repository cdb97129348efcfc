#pragma once

#include "foundation/TDError.h"
#include "foundation/TDFileCommon.h"
#include "replace/RewriteProblem.h"
#include "replace/RewriteRun.h"
#include "replace/UndoJournal.h"

#include <atomic>
#include <functional>
#include <optional>
#include <vector>

namespace tidemark {

class UndoStepReader;

/// Takes a step of the journal back, in a run like that of replacing: with backups and records, group by
/// group. A file whose content isn't what the step left is refused; one that already holds what it held
/// before needs nothing. What is done makes a step of the other kind. Only contents are believed, so another
/// run can go on where one was stopped or killed. Main thread.
class RewriteUndo
{
public:
    /// What became of a file. One that was changed by a step more than once may come more than once.
    struct File
    {
        FilePath path;
        bool isDone = false;                           ///< it is what it was before the step
        bool isChanged = false;                        ///< by this run
        std::optional<FileDate> newDate;               ///< of a file that was changed
        RewriteProblem problem = RewriteProblem::None; ///< Changed: it isn't what the step left
        TDError error;
        FilePath backup; ///< with the content from before this run, where that may be needed
    };
    enum class End {
        Complete, ///< each file was done or refused
        Stopped,  ///< what wasn't reached is still in the step
        NoStep,   ///< there is none with that id
        InUse,    ///< another run has it, or it is being written
        Unreadable,
    };
    struct Outcome
    {
        End end = End::Complete;
        /// In the order in which they were done: the latest first.
        std::vector<File> files;
        qint64 filesDone = 0; ///< changed by this run
        qint64 filesRefused = 0;
        qint64 matches = 0;
        /// The step is still there, for files that a stop, the disk or missing rights held up, or since
        /// nothing of it could be taken back.
        bool isStepLeft = false;
        /// Some files of the step can't be read from it any more. They stay as they are and aren't listed.
        bool isStepDamaged = false;
        /// Whether this can be taken back, and by which step.
        UndoKeeping keeping = UndoKeeping::Nothing;
        QByteArray newStep;
        /// For the user: a summary of the files that were refused.
        TDError error;
    };
    /// Called now and then with the number of files done; may deliver events.
    using BetweenFiles = std::function<void(quint64 filesDone)>;

    /// `stop` is looked at before every file and every group.
    RewriteUndo(UndoJournal journal, const std::atomic<bool> &stop, BetweenFiles betweenFiles = {});

    /// Undoes an undo step, redoes a redo step.
    Outcome takeBack(const QByteArray &stepId);

private:
    void _takeBackFiles(UndoStepReader &reader, const std::shared_ptr<UndoStepWriter> &writer);
    void _fileIsDone(const FileRewrite &rewrite, bool isRewritten);
    void _noteLateProblem(const RewriteRun::LateProblem &late);
    void _endStep(UndoStepReader &reader, const FilePath &path);
    static bool _mayBeTriedAgain(const File &file);

    UndoJournal _journal;
    const std::atomic<bool> &_stop;
    BetweenFiles _betweenFiles;

    Outcome _outcome;
    qint64 _fileCount = 0;
    qint64 _matchesLeft = 0;
};

} // namespace tidemark
