#pragma once

#include "replace/RewriteUndo.h"
#include "replace/TDReplaceEngine.h"
#include "replace/TDSelectedMatchReplacement.h"
#include "replace/UndoJournal.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <memory>

namespace tidemark {

/// What replacing needs to know of the document and the application. All are called on the main thread.
struct ReplaceContext
{
    std::function<QString()> findText;
    std::function<QString()> replaceText;
    IsFileInSearchLocations isFileInSearchLocations;
    std::function<void()> increaseBusyWindowCount = [] {};
    std::function<void()> decreaseBusyWindowCount = [] {};
};

/// How much a replacement would change.
struct ReplaceExtent
{
    quint64 matches = 0; ///< without those that were replaced before
    quint64 files = 0;
    qint64 undoSize = 0; ///< what keeping it for undoing takes at most, as far as that can be told

    /// Whether a run over it would be kept for undoing, by the journal and the settings in force.
    bool canBeUndone() const;

    static ReplaceExtent of(const LinesByFile &lines);
};

/// Replaces matches of a window's results: one, or many in a run that can be stopped. A run stays on the main
/// thread and delivers events between the files; meanwhile isReplacing() holds, and nothing else may change
/// the results. It survives that this object goes away meanwhile. Main thread only.
class ReplaceControl : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool replacing READ isReplacing NOTIFY replacing)

public:
    using Outcome = TDSelectedMatchReplacement::Outcome;

    explicit ReplaceControl(ReplaceContext context, QObject *parent = nullptr);
    ~ReplaceControl() override;

    QString findText() const { return _context.findText(); }
    QString replaceText() const { return _context.replaceText(); }

    /// What every match would become, with the texts and settings as they are now.
    TDReplacement replacement() const;

    /// Replaces the node's highlighted match and saves the file. True when the highlight already stands on
    /// the next match.
    bool replaceMatch(TDFindResultItem &item, TDError &error);
    /// Replaces all matches of the lines. `showEnd` is called at the end while
    /// isReplacing() still holds, and not at all if this object has gone away; it may deliver events. Does
    /// nothing during a run.
    void replaceMatches(const LinesByFile &lines, const std::function<void(const Outcome &)> &showEnd = {});

    /// Undoes or redoes a step of the journal, as replaceMatches() replaces: with the same signals, and it
    /// can be stopped. Results that are listed don't follow by themselves.
    void takeBack(const QByteArray &stepId,
                  const std::function<void(const RewriteUndo::Outcome &)> &showEnd = {});
    /// The single replacements so far make one step, whose id it returns, if there were any: to be called
    /// when the walk through the results is over, and before a step is undone or listed. Other replacements
    /// end it, too.
    QByteArray endWalk();

    enum class Run { None, Replacing, Undoing, Redoing };
    Run run() const { return _run; }
    bool isReplacing() const { return _run != Run::None; }
    bool stopReplace() const { return *_stopReplace; }
    /// Asks a run to stop; the next one clears it at its start.
    void setStopReplace(bool stop) { *_stopReplace = stop; }

Q_SIGNALS:
    void replacing(bool isReplacing);
    /// After a single replacement, whether it failed or not.
    void replacedMatch();
    /// Files done of the files with something to replace; what is listed agrees with them.
    void progressed(quint64 filesDone, quint64 fileCount);
    /// Sent at the end of every run, before replacing(false).
    void finished(const tidemark::TDSelectedMatchReplacement::Outcome &outcome);
    /// The same for takeBack().
    void tookBack(const tidemark::RewriteUndo::Outcome &outcome);

private:
    ReplaceRequest _request() const;
    TDSelectedMatchReplacement::BetweenFiles _deliverEvents(quint64 fileCount);
    void _begin(Run run, quint64 fileCount);
    template <typename Ended, typename Signal>
    void _endRun(const Ended &outcome, const std::function<void(const Ended &)> &showEnd, Signal signal);

    ReplaceContext _context;
    /// A run keeps it beyond the end of this object.
    std::shared_ptr<std::atomic<bool>> _stopReplace;
    Run _run = Run::None;
    UndoWalk _walk;
};

} // namespace tidemark
