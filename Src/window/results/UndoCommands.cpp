#include "window/results/UndoCommands.h"

#include "foundation/LocalizedText.h"
#include "replace/ResolvedPaths.h"
#include "replace/UndoStepFiles.h"
#include "session/EverythingShows.h"
#include "session/MyDocument.h"
#include "session/ReplaceControl.h"
#include "session/SearchControl.h"
#include "window/ErrorSheet.h"
#include "window/results/ShownOutline.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QAction>
#include <QMessageBox>
#include <QPointer>

namespace tidemark {

namespace {

QString groupedCount(qint64 count, const char *one, const char *many)
{
    return formatted(localizedString(count == 1 ? one : many), {grouped(quint64(count))});
}

QSet<FilePath> changedFiles(const RewriteUndo::Outcome &outcome)
{
    QSet<FilePath> changed;
    for (const RewriteUndo::File &file : outcome.files) {
        if (file.isChanged)
            changed.insert(file.path);
    }
    return changed;
}

} // namespace

UndoCommands::UndoCommands(MyDocument &document, ReplaceControl &replace, SearchControl &search,
                           TDSearchResultsOutlineView &view, QAction &undo, QAction &redo, QObject *parent)
    : QObject(parent), _document(document), _replace(replace), _search(search), _view(view), _undo(undo),
      _redo(redo)
{
    connect(&_undo, &QAction::triggered, this, [this] { _takeBackLast(UndoStepKind::Undo); });
    connect(&_redo, &QAction::triggered, this, [this] { _takeBackLast(UndoStepKind::Redo); });
    connect(&_replace, &ReplaceControl::replacing, this, [this](bool isReplacing) {
        if (isReplacing)
            _show();
        else
            update();
    });
    connect(&_replace, &ReplaceControl::replacedMatch, this, &UndoCommands::_noteReplacedMatch);
    connect(&_search, &SearchControl::searchingChanged, this, &UndoCommands::_show);
    connect(&_search, &SearchControl::searchWillStart, this, [this] { _listedFiles.clear(); });
    _show();
}

void UndoCommands::update()
{
    _lastUndo = _lastRedo = {true, {}};
    if (!_replace.isReplacing())
        (void)_replace.endWalk();
    const std::optional<UndoJournal> journal = UndoJournal::current();
    for (const UndoStep &step : journal ? journal->steps() : QList<UndoStep>()) {
        LastStep &last = step.kind == UndoStepKind::Undo ? _lastUndo : _lastRedo;
        if (!last.step && step.files > 0 && !step.isInUse)
            last.step = step;
    }
    _show();
}

void UndoCommands::_show()
{
    // Results that arrive meanwhile would come in between.
    const bool isFree = !_replace.isReplacing() && !_search.searching() && UndoJournal::current();
    const auto show = [isFree](QAction &action, const LastStep &last, const char *none, const char *one,
                               const char *many) {
        action.setEnabled(isFree && (last.step || !last.isKnown));
        action.setText(last.step ? groupedCount(last.step->files, one, many) : localizedString(none));
    };
    show(_undo, _lastUndo, "&Undo Replacing", "&Undo Replacing in %@ File", "&Undo Replacing in %@ Files");
    show(_redo, _lastRedo, "&Redo Replacing", "&Redo Replacing in %@ File", "&Redo Replacing in %@ Files");
}

/// Its walk is still going on, but can be undone as soon as somebody wants to.
void UndoCommands::_noteReplacedMatch()
{
    _lastUndo = _lastRedo = {};
    _show();
}

void UndoCommands::_takeBackLast(UndoStepKind kind)
{
    if (_replace.isReplacing())
        return;
    update();
    const LastStep last = kind == UndoStepKind::Undo ? _lastUndo : _lastRedo;
    if (last.step)
        takeBack(last.step->id);
}

void UndoCommands::takeBack(const QByteArray &stepId)
{
    // Results that arrive would be those of files that change meanwhile.
    if (_search.searching())
        return;
    const auto kind = stepId.startsWith(REDO_PREFIX) ? UndoStepKind::Redo : UndoStepKind::Undo;
    _replace.takeBack(stepId, [self = QPointer(this), kind](const RewriteUndo::Outcome &outcome) {
        if (self)
            self->_showEnd(outcome, kind);
    });
}

void UndoCommands::_showEnd(const RewriteUndo::Outcome &outcome, UndoStepKind kind)
{
    {
        const EverythingShows everythingShows(_document.findResults());
        if (!_searchAgain(outcome))
            return;
        _markRefused(outcome);
    }
    QString status = kind == UndoStepKind::Redo
                         ? groupedCount(outcome.filesDone, "Redone in %@ file", "Redone in %@ files")
                         : groupedCount(outcome.filesDone, "%@ file is as it was before",
                                        "%@ files are as they were before");
    if (outcome.end == RewriteUndo::End::Stopped)
        status = localizedString("Stopped") + localizedString(" • ") + status;
    _document.setResultsStatusText(status);
    Q_EMIT tookBack(quint64(outcome.filesRefused),
                    outcome.keeping == UndoKeeping::Kept ? outcome.newStep : QByteArray());
    _tellProblem(outcome);
}

bool UndoCommands::_searchAgain(const RewriteUndo::Outcome &outcome)
{
    const QPointer self(this);
    const std::optional<SearchTerms> terms = _search.searchedTerms();
    if (!terms)
        return true;
    // A stop was about the files; whoever asks for another one doesn't want to wait for their lines.
    _replace.setStopReplace(false);
    const auto shouldStop = [self] {
        return !self || self->_replace.stopReplace() || !self->_view.window()->isVisible();
    };
    // Shared: events may take away this object.
    const auto listedFiles = std::make_shared<ListedFiles>(std::move(_listedFiles));
    const auto files = listedFiles->searchedAgain(_document.findResults().files(), changedFiles(outcome),
                                                  *terms, shouldStop);
    if (!self)
        return false;
    _listedFiles = std::move(*listedFiles);
    if (!files)
        return true;
    const ShownOutline shown(_view);
    _document.findResults().clear();
    _document.findResults().append(*files);
    _document.setFilesWithMatchesCount(files->size());
    shown.restore(_view);
    return true;
}

void UndoCommands::_markRefused(const RewriteUndo::Outcome &outcome)
{
    QHash<FilePath, QString> reasons;
    for (const RewriteUndo::File &file : outcome.files) {
        if (!file.isDone && file.problem != RewriteProblem::None)
            reasons.insert(file.path, textOfProblem(file.problem));
    }
    if (reasons.isEmpty())
        return;
    ResolvedPaths resolved;
    for (const auto &file : _document.findResults().files()) {
        const QString reason = reasons.value(resolved.resolving(file->path()));
        if (!reason.isEmpty())
            file->setRemark(reason);
    }
    _view.viewport()->update();
}

void UndoCommands::_tellProblem(const RewriteUndo::Outcome &outcome)
{
    if (outcome.error)
        presentErrorSheet(_view.window(), outcome.error);
    else if (outcome.end == RewriteUndo::End::NoStep)
        makePlainSheet(_view.window(),
                       localizedString("This replacement was undone already, or isn't kept any more."), {})
            ->open();
    else if (outcome.end == RewriteUndo::End::Unreadable)
        makePlainSheet(_view.window(),
                       localizedString("What was noted of this replacement can't be read any more."), {})
            ->open();
    else if (outcome.end == RewriteUndo::End::InUse)
        makePlainSheet(_view.window(), localizedString("This replacement is being undone elsewhere."), {})
            ->open();
}

} // namespace tidemark
