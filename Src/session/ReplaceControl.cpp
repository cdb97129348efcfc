#include "session/ReplaceControl.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QSet>

#include <algorithm>
#include <utility>

namespace tidemark {

namespace {

constexpr qint64 MILLISECONDS_BETWEEN_EVENTS = 25;
/// What tells it draws much anew.
constexpr qint64 MILLISECONDS_BETWEEN_PROGRESS = 75;

quint64 openMatchesOf(const TDFindResultItem &item)
{
    return item.matchLine()->numberOfMatches() - item.matchLine()->numberOfReplacedMatches();
}

/// Those in which something is left to replace. Looks at no more of a file's lines than it takes.
quint64 filesToReplaceIn(const LinesByFile &lines)
{
    QSet<const TDFindResultItem *> files;
    for (const auto &[file, ofFile] : lines) {
        if (std::any_of(ofFile.begin(), ofFile.end(),
                        [](const auto &line) { return openMatchesOf(*line) > 0; }))
            files.insert(file);
    }
    return quint64(files.size());
}

} // namespace

ReplaceExtent ReplaceExtent::of(const LinesByFile &lines)
{
    ReplaceExtent extent;
    QSet<const TDFindResultItem *> files;
    UndoSizeEstimate undoSize;
    for (const auto &[file, ofFile] : lines) {
        const quint64 matchesBefore = extent.matches;
        undoSize.addFile(*file);
        for (const auto &line : ofFile) {
            undoSize.addLine(*line->matchLine());
            extent.matches += openMatchesOf(*line);
        }
        if (extent.matches > matchesBefore)
            files.insert(file);
    }
    extent.files = quint64(files.size());
    extent.undoSize = undoSize.bytes();
    return extent;
}

bool ReplaceExtent::canBeUndone() const
{
    const std::optional<UndoJournal> journal = UndoJournal::current();
    return journal && journal->hasRoomFor(undoSize);
}

ReplaceControl::ReplaceControl(ReplaceContext context, QObject *parent)
    : QObject(parent), _context(std::move(context)), _stopReplace(std::make_shared<std::atomic<bool>>(false))
{}

ReplaceControl::~ReplaceControl()
{
    *_stopReplace = true;
    if (isReplacing())
        _context.decreaseBusyWindowCount();
}

ReplaceRequest ReplaceControl::_request() const
{
    return {_context.findText(), _context.replaceText(), _context.isFileInSearchLocations};
}

TDReplacement ReplaceControl::replacement() const
{
    return {findText(), replaceText(), FindOptions::withUserDefaults(), ReplacementExtent::EveryOccurrence};
}

bool ReplaceControl::replaceMatch(TDFindResultItem &item, TDError &error)
{
    _context.increaseBusyWindowCount();
    ReplaceRequest request = _request();
    request.undoStep = _walk.step(request.findText, request.replaceText);
    const bool standsOnNextMatch =
        TDReplaceEngine::performReplaceWithSave(TDReplaceEngine::Save::Yes, item, request, error);
    _context.decreaseBusyWindowCount();
    Q_EMIT replacedMatch();
    return standsOnNextMatch;
}

TDSelectedMatchReplacement::BetweenFiles ReplaceControl::_deliverEvents(quint64 fileCount)
{
    const auto isDue = [](const QElapsedTimer &timer, qint64 milliseconds) {
        return !timer.isValid() || timer.elapsed() >= milliseconds;
    };
    return [self = QPointer(this), fileCount, isDue, events = QElapsedTimer(),
            progress = QElapsedTimer()](quint64 filesDone) mutable {
        if (!isDue(events, MILLISECONDS_BETWEEN_EVENTS))
            return;
        if (self && isDue(progress, MILLISECONDS_BETWEEN_PROGRESS)) {
            Q_EMIT self->progressed(filesDone, fileCount);
            progress.start();
        }
        QCoreApplication::processEvents();
        events.start();
    };
}

void ReplaceControl::replaceMatches(const LinesByFile &lines,
                                    const std::function<void(const Outcome &)> &showEnd)
{
    if (isReplacing())
        return;
    // Events may take away the window, and with it this object; the run then ends on what it holds itself.
    const QPointer self(this);
    const auto stop = _stopReplace;
    const quint64 fileCount = filesToReplaceIn(lines);
    ReplaceRequest request = _request();
    request.isFileInSearchLocations = [self, asked = request.isFileInSearchLocations](const FilePath &path) {
        return self && asked(path);
    };
    _begin(Run::Replacing, fileCount);
    const Outcome outcome =
        TDSelectedMatchReplacement(request, *stop, _deliverEvents(fileCount)).replaceSelectedMatches(lines);
    if (self)
        _endRun(outcome, showEnd, &ReplaceControl::finished);
}

void ReplaceControl::takeBack(const QByteArray &stepId,
                              const std::function<void(const RewriteUndo::Outcome &)> &showEnd)
{
    const std::optional<UndoJournal> journal = UndoJournal::current();
    if (isReplacing() || !journal)
        return;
    const QPointer self(this);
    const auto stop = _stopReplace;
    Run run = Run::Undoing;
    quint64 fileCount = 0;
    for (const UndoStep &step : journal->steps()) {
        if (step.id != stepId)
            continue;
        fileCount = quint64(step.files);
        run = step.kind == UndoStepKind::Redo ? Run::Redoing : Run::Undoing;
    }
    _begin(run, fileCount);
    const RewriteUndo::Outcome outcome =
        RewriteUndo(*journal, *stop, _deliverEvents(fileCount)).takeBack(stepId);
    if (self)
        _endRun(outcome, showEnd, &ReplaceControl::tookBack);
}

QByteArray ReplaceControl::endWalk()
{
    return _walk.end();
}

void ReplaceControl::_begin(Run run, quint64 fileCount)
{
    (void)endWalk();
    *_stopReplace = false;
    _run = run;
    _context.increaseBusyWindowCount();
    Q_EMIT replacing(true);
    Q_EMIT progressed(0, fileCount);
}

template <typename Ended, typename Signal>
void ReplaceControl::_endRun(const Ended &outcome, const std::function<void(const Ended &)> &showEnd,
                             Signal signal)
{
    const QPointer self(this);
    if (showEnd)
        showEnd(outcome);
    // It may have delivered events, too.
    if (!self)
        return;
    _run = Run::None;
    _context.decreaseBusyWindowCount();
    Q_EMIT(this->*signal)(outcome);
    // The last thing: a window that waited for this may go away now.
    Q_EMIT replacing(false);
}

} // namespace tidemark
