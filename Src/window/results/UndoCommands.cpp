#include "window/results/UndoCommands.h"

#include "foundation/LocalizedText.h"
#include "session/ListedFiles.h"
#include "session/MyDocument.h"
#include "session/ReplaceControl.h"
#include "session/SearchControl.h"
#include "window/ErrorSheet.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QAction>
#include <QLocale>

namespace tidemark {

namespace {

QString counted(qint64 count, const char *one, const char *many)
{
    return formatted(localizedString(count == 1 ? one : many), {QLocale().toString(count)});
}

void showStep(QAction &action, const std::optional<UndoStep> &step, bool isFree, const char *none,
              const char *one, const char *many)
{
    action.setEnabled(step && isFree);
    action.setText(step ? counted(step->files, one, many) : localizedString(none));
}

} // namespace

UndoCommands::UndoCommands(MyDocument &document, ReplaceControl &replace, SearchControl &search,
                           TDSearchResultsOutlineView &view, QAction &undo, QAction &redo, QObject *parent)
    : QObject(parent), _document(document), _replace(replace), _search(search), _view(view), _undo(undo),
      _redo(redo)
{
    connect(&_undo, &QAction::triggered, this, [this] { _takeBackLast(UndoStepKind::Undo); });
    connect(&_redo, &QAction::triggered, this, [this] { _takeBackLast(UndoStepKind::Redo); });
    connect(&_replace, &ReplaceControl::replacing, this, &UndoCommands::update);
    connect(&_replace, &ReplaceControl::replacedMatch, this, [this] {
        // Its walk can be undone as soon as it is asked for.
        _undo.setEnabled(UndoJournal::current().has_value());
    });
    connect(&_search, &SearchControl::searchingChanged, this, &UndoCommands::update);
    update();
}

void UndoCommands::update()
{
    const std::optional<UndoJournal> journal = UndoJournal::current();
    const auto last = [&journal](UndoStepKind kind) {
        return journal ? journal->lastStep(kind) : std::nullopt;
    };
    // Results that arrive meanwhile would come in between.
    const bool isFree = !_replace.isReplacing() && !_search.searching();
    showStep(_undo, last(UndoStepKind::Undo), isFree, "&Undo Replacing", "&Undo Replacing in %@ File",
             "&Undo Replacing in %@ Files");
    showStep(_redo, last(UndoStepKind::Redo), isFree, "&Redo Replacing", "&Redo Replacing in %@ File",
             "&Redo Replacing in %@ Files");
}

void UndoCommands::_takeBackLast(UndoStepKind kind)
{
    if (_replace.isReplacing())
        return;
    (void)_replace.endWalk();
    const std::optional<UndoJournal> journal = UndoJournal::current();
    const std::optional<UndoStep> step = journal ? journal->lastStep(kind) : std::nullopt;
    if (step)
        takeBack(step->id);
    else
        update();
}

void UndoCommands::takeBack(const QByteArray &stepId)
{
    _replace.takeBack(stepId, [self = QPointer(this)](const RewriteUndo::Outcome &outcome) {
        if (self)
            self->_showEnd(outcome);
    });
}

void UndoCommands::_showEnd(const RewriteUndo::Outcome &outcome)
{
    QSet<FilePath> changed;
    for (const RewriteUndo::File &file : outcome.files) {
        if (file.isChanged)
            changed.insert(file.path);
    }
    if (const auto &terms = _search.searchedTerms())
        searchListedFilesAgain(_document.findResults(), changed, terms->findText);
    QString status =
        counted(outcome.filesDone, "%@ file is as it was before", "%@ files are as they were before");
    if (outcome.end == RewriteUndo::End::Stopped)
        status = localizedString("Stopped") + localizedString(" • ") + status;
    if (outcome.filesRefused > 0)
        status += localizedString(" • ") + counted(outcome.filesRefused, "%@ file failed", "%@ files failed");
    _document.setResultsStatusText(status);
    if (outcome.error)
        presentErrorSheet(_view.window(), outcome.error);
    else if (outcome.end == RewriteUndo::End::Unreadable || outcome.end == RewriteUndo::End::NoStep)
        makePlainSheet(_view.window(),
                       localizedString("What was noted of this replacement can't be read any more."), {})
            ->open();
}

} // namespace tidemark
