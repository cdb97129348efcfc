#include "window/results/ResultsPane.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "search/LeaveOutPattern.h"
#include "session/IncludedKinds.h"
#include "session/MyDocument.h"
#include "session/ResultsFilter.h"
#include "session/SearchControl.h"
#include "session/SearchStatusLine.h"
#include "session/UnreadableFiles.h"
#include "ui_MyDocument.h"
#include "window/BackupsDialog.h"
#include "window/EmptyState.h"
#include "window/ErrorSheet.h"
#include "window/HistoryDialog.h"
#include "window/SearchWindow.h"
#include "window/SearchWindowActions.h"
#include "window/SearchWindowTexts.h"
#include "window/Symbols.h"
#include "window/form/LeaveOutForm.h"
#include "window/results/ReadAsCommands.h"
#include "window/results/ResultsFilterBox.h"
#include "window/results/ResultsFont.h"
#include "window/results/ShownReplacements.h"
#include "window/results/StatusLinks.h"

#include <QAccessible>
#include <QAction>
#include <QDrag>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>

namespace tidemark {

namespace {

/// Files arrive expanded while a search has found fewer lines than this.
constexpr quint64 SEARCH_EXPANDED_BELOW = 200;

/// The view has to show the model before anything else is made of it.
TDSearchResultsOutlineView &viewShowing(SearchWindow &window, ResultsTreeModel &model)
{
    TDSearchResultsOutlineView *view = window.ui().searchResultsOutlineView;
    view->setModel(&model);
    return *view;
}

} // namespace

ResultsPane::ResultsPane(MyDocument &document, SearchWindow &window, const SearchWindowActions &actions,
                         SearchControl &search, ReplaceControl &replace)
    : _document(document), _search(search), _replace(replace), _ui(window.ui()), _actions(actions),
      _model(document.findResults()),
      _navigation(document.findResults(), _model, viewShowing(window, _model)), _resultsActions(_navigation),
      _replaceCommands(replace, search, _model, outlineView(), _navigation),
      _exportPanel(
          &window, [this] { return _replaceCommands.allItems(); },
          [this] { return std::make_unique<TDReplacement>(_replace.replacement()); }, this),
      _undoCommands(document, replace, search, outlineView(), *actions.undoReplacing, *actions.redoReplacing,
                    this),
      _leftOutNotice(_ui, search), _outcomeNotice(_ui),
      _failureWalk(_model, outlineView(), *actions.showFailures,
                   [](const TDFindResultItem &file) { return !file.remark().isEmpty(); }),
      _unreadableWalk(_model, outlineView(), *actions.showUnreadableFiles, couldNotBeRead)
{
    showSymbol(_ui.navigateUpButton, Symbol::Previous);
    showSymbol(_ui.navigateDownButton, Symbol::Next);
    showSymbol(_ui.expandCollapseButton, Symbol::ExpandCollapse);
    showSymbol(_ui.removeSelectedButton, Symbol::Clear);
    _setUpToolTips();
    _setUpTexts();
    _setUpCommands();
    _setUpKeys();
    _setUpButtons();
    _setUpReplaceProgress();
    _setUpFilter();
    _setUpOutcome();
    _setUpEncodings();
    _setUpTextSize();
    new StatusLinks(_ui, this);
    _shownReplacements = new ShownReplacements(_document, outlineView(), *_ui.showReplacementsCheckBox,
                                               *_actions.showReplacements, this);
    connect(&_leftOutNotice, &LeftOutNotice::searchOfEverythingRequested, this,
            &ResultsPane::searchOfEverythingRequested);
    connect(&_resultsActions, &ResultsActions::leaveOutRequested, this, &ResultsPane::_leaveOut);
    _resultsActions.setLocations([this] { return _document.searchLocations(); });
    connect(&outlineView().emptyState(), &EmptyState::buttonClicked, _actions.addLocation, &QAction::trigger);
    _noteResults();
    _showHint();
}

TDSearchResultsOutlineView &ResultsPane::outlineView() const
{
    return *_ui.searchResultsOutlineView;
}

void ResultsPane::_setUpToolTips()
{
    _ui.navigateUpButton->setToolTip(tooltipNavUp());
    _ui.navigateDownButton->setToolTip(tooltipNavDown());
    _ui.expandCollapseButton->setToolTip(tooltipExpandCollapse());
    _ui.removeSelectedButton->setToolTip(tooltipRemoveSelected());
    _ui.replaceButton->setToolTip(tooltipReplace());
    _ui.replaceAndFindButton->setToolTip(tooltipReplaceAndFind());
    _ui.replaceSelectionButton->setToolTip(tooltipReplaceInSelection());
    _ui.replaceAllButton->setToolTip(tooltipReplaceAll());
    _ui.searchResultsOutlineView->setToolTip(tooltipSearchResults());
    _ui.showReplacementsCheckBox->setToolTip(tooltipShowReplacements());
}

void ResultsPane::_setUpTexts()
{
    connect(&_search, &SearchControl::sectionTitleChanged, _ui.searchResultsSectionTitleText,
            &QLabel::setText);
    connect(&_document, &MyDocument::resultsStatusTextChanged, _ui.resultsStatusLabel,
            [this] { _ui.resultsStatusLabel->setWholeText(_document.resultsStatusText()); });
}

void ResultsPane::_setUpCommands()
{
    connect(_actions.nextMatch, &QAction::triggered, &_navigation, &ResultsNavigation::moveToNextMatch);
    connect(_actions.previousMatch, &QAction::triggered, &_navigation,
            &ResultsNavigation::moveToPreviousMatch);
    connect(_actions.extendToNextMatch, &QAction::triggered, &_navigation,
            &ResultsNavigation::moveToNextMatchByExtendingSelection);
    connect(_actions.extendToPreviousMatch, &QAction::triggered, &_navigation,
            &ResultsNavigation::moveToPreviousMatchByExtendingSelection);
    connect(_actions.firstMatchInNextFile, &QAction::triggered, &_navigation,
            &ResultsNavigation::moveToFirstMatchInNextFile);
    connect(_actions.firstMatchInPreviousFile, &QAction::triggered, &_navigation,
            &ResultsNavigation::moveToFirstMatchInFile);
    connect(_actions.expandCollapseAll, &QAction::triggered, &_navigation,
            &ResultsNavigation::expandCollapseAll);
    connect(_actions.removeSelected, &QAction::triggered, &_navigation, &ResultsNavigation::removeSelected);
    connect(_actions.replace, &QAction::triggered, &_replaceCommands, &ReplaceCommands::replace);
    connect(_actions.replaceAndFind, &QAction::triggered, &_replaceCommands,
            &ReplaceCommands::replaceAndFind);
    connect(_actions.replaceSelection, &QAction::triggered, &_replaceCommands,
            &ReplaceCommands::replaceSelection);
    connect(_actions.replaceAll, &QAction::triggered, &_replaceCommands, &ReplaceCommands::replaceAll);
    connect(_actions.exportResults, &QAction::triggered, &_exportPanel, &ExportPanel::open);
    connect(_actions.history, &QAction::triggered, this, [this] {
        (void)_replace.endWalk();
        auto *history = new HistoryDialog(outlineView().window());
        connect(history, &HistoryDialog::takeBackRequested, &_undoCommands, &UndoCommands::takeBack,
                Qt::QueuedConnection);
        history->open();
    });
    connect(_actions.deleteBackups, &QAction::triggered, this,
            [this] { (new BackupsDialog(outlineView().window()))->open(); });
}

void ResultsPane::_setUpKeys()
{
    const std::pair<QKeyCombination, QAction *> actions[] = {
        {Qt::Key_Down, _actions.nextMatch},
        {Qt::Key_Up, _actions.previousMatch},
        {Qt::SHIFT | Qt::Key_Down, _actions.extendToNextMatch},
        {Qt::SHIFT | Qt::Key_Up, _actions.extendToPreviousMatch},
        {Qt::CTRL | Qt::Key_Down, _actions.firstMatchInNextFile},
        {Qt::CTRL | Qt::Key_Up, _actions.firstMatchInPreviousFile},
        {Qt::Key_Delete, _actions.removeSelected},
        {Qt::Key_Return, _resultsActions.openAtMatchAction()},
        {Qt::CTRL | Qt::Key_C, _resultsActions.copyLineAction()},
        {Qt::CTRL | Qt::Key_R, _actions.replace},
        {Qt::CTRL | Qt::Key_X, _actions.replaceAndFind},
        {Qt::CTRL | Qt::Key_S, _actions.replaceSelection},
        {Qt::CTRL | Qt::Key_L, _actions.replaceAll}};
    OutlineKeys keys;
    for (const auto &[key, action] : actions)
        keys.set(key, action);
    outlineView().setKeys(keys);
    connect(&outlineView(), &TDSearchResultsOutlineView::rowDoubleClicked,
            _resultsActions.openAtMatchAction(), &QAction::trigger);
    connect(&_resultsActions, &ResultsActions::failed, this,
            [this](const QString &problem) { makePlainSheet(outlineView().window(), problem, {})->open(); });
    connect(&outlineView(), &TDSearchResultsOutlineView::dragRequested, this, [this] {
        std::unique_ptr<QMimeData> data = _resultsActions.dragged();
        if (data == nullptr)
            return;
        auto *drag = new QDrag(&outlineView());
        drag->setMimeData(data.release());
        drag->exec(Qt::CopyAction);
    });
    connect(&outlineView(), &TDSearchResultsOutlineView::menuRequested, this,
            [this](QPoint position) { _resultsActions.searchResultsOutLineViewMenu()->popup(position); });
}

void ResultsPane::_setUpButtons()
{
    const std::pair<QAbstractButton *, QAction *> buttons[] = {
        {_ui.navigateUpButton, _actions.previousMatch},
        {_ui.navigateDownButton, _actions.nextMatch},
        {_ui.expandCollapseButton, _actions.expandCollapseAll},
        {_ui.removeSelectedButton, _actions.removeSelected},
        {_ui.replaceButton, _actions.replace},
        {_ui.replaceAndFindButton, _actions.replaceAndFind},
        {_ui.replaceSelectionButton, _actions.replaceSelection},
        {_ui.replaceAllButton, _actions.replaceAll}};
    for (const auto &[button, action] : buttons) {
        connect(button, &QAbstractButton::clicked, action, &QAction::trigger);
        connect(action, &QAction::enabledChanged, button, &QAbstractButton::setEnabled);
    }
    FindResults &results = _document.findResults();
    connect(&results, &FindResults::cleared, this, [this] { _linesOfSearch = 0; });
    connect(&results, &FindResults::appended, this, &ResultsPane::_expandWhileFew);
    connect(&results, &FindResults::appended, this, &ResultsPane::_noteResults);
    connect(
        &results, &FindResults::aboutToGrow, this,
        [this](const TDFindResultItem *, qsizetype, qsizetype count) { _linesOfSearch += quint64(count); });
    connect(&results, &FindResults::grown, this, &ResultsPane::_noteResults);
    connect(&results, &FindResults::removed, this, &ResultsPane::_noteResults);
    connect(&results, &FindResults::thinnedOut, this, &ResultsPane::_noteResults);
    connect(&results, &FindResults::cleared, this, &ResultsPane::_noteResults);
    connect(&_navigation, &ResultsNavigation::firstItemSelectedChanged, this, &ResultsPane::_noteResults);
    connect(&_navigation, &ResultsNavigation::lastItemSelectedChanged, this, &ResultsPane::_noteResults);
    connect(&_navigation, &ResultsNavigation::selectionChanged, this, &ResultsPane::_noteResults);
    // A replaced match can be the last one of its line.
    connect(_actions.replace, &QAction::triggered, this, &ResultsPane::_noteResults);
    connect(_actions.replaceAndFind, &QAction::triggered, this, &ResultsPane::_noteResults);
    connect(&_search, &SearchControl::searchingChanged, this, &ResultsPane::_noteResults);
}

void ResultsPane::_setUpReplaceProgress()
{
    connect(&_replace, &ReplaceControl::replacing, this, &ResultsPane::_showReplacing);
    connect(&_replace, &ReplaceControl::progressed, this, &ResultsPane::_showReplaceProgress);
    connect(&_replace, &ReplaceControl::finished, this, &ResultsPane::_showOutcome);
    connect(_ui.stopReplaceButton, &QPushButton::clicked, this, [this] { _replace.setStopReplace(true); });
}

void ResultsPane::_setUpOutcome()
{
    connect(&_outcomeNotice, &OutcomeNotice::failuresRequested, _actions.showFailures, &QAction::trigger);
    connect(&_outcomeNotice, &OutcomeNotice::takeBackRequested, &_undoCommands, &UndoCommands::takeBack);
    connect(&_undoCommands, &UndoCommands::tookBack, &_outcomeNotice, &OutcomeNotice::show);
    connect(&_undoCommands, &UndoCommands::tookBack, this, [this] {
        if (!_navigation.selection().hasSelection())
            _navigation.selectFirstMatch();
    });
    connect(&_replace, &ReplaceControl::replacedMatch, &_outcomeNotice, &OutcomeNotice::forgetStep);
    connect(&_replace, &ReplaceControl::replacedMatch, &_failureWalk, &FailureWalk::update);
    connect(&_replace, &ReplaceControl::replacing, &_failureWalk, &FailureWalk::update);
    connect(&_search, &SearchControl::searchingChanged, &_outcomeNotice, &OutcomeNotice::hide);
}

void ResultsPane::_setUpEncodings()
{
    new ReadAsCommands(_search, _model, outlineView(), _resultsActions, this);
    auto *column = new QAction(localizedString("Encoding"), this);
    column->setCheckable(true);
    QHeaderView *header = outlineView().header();
    header->setContextMenuPolicy(Qt::ActionsContextMenu);
    header->addAction(column);
    const auto update = [column, action = _actions.showEncodings] {
        const bool isShown = UserDefaults::standard().boolForKey(TD_USER_DEFAULTS_NAME_SHOW_ENCODINGS);
        column->setChecked(isShown);
        action->setChecked(isShown);
    };
    for (const QAction *action : {column, _actions.showEncodings})
        connect(action, &QAction::triggered, this, [](bool shown) {
            UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_SHOW_ENCODINGS, shown);
        });
    connect(&UserDefaults::standard(), &UserDefaults::valueChanged, this, update);
    update();
    connect(&_outcomeNotice, &OutcomeNotice::unreadableFilesRequested, _actions.showUnreadableFiles,
            &QAction::trigger);
    connect(&_unreadableWalk, &FailureWalk::countChanged, this, &ResultsPane::_noteUnreadable);
    connect(&_search, &SearchControl::searchingChanged, &_unreadableWalk, &FailureWalk::update);
    connect(&_replace, &ReplaceControl::replacing, &_unreadableWalk, &FailureWalk::update);
}

/// While files arrive, or change, the status tells of that.
void ResultsPane::_noteUnreadable()
{
    const bool isQuiet = !_search.searching() && !_replace.isReplacing();
    _outcomeNotice.setUnreadableFiles(isQuiet ? quint64(_unreadableWalk.count()) : 0);
}

void ResultsPane::_setUpTextSize()
{
    const std::pair<QAction *, int> steps[] = {
        {_actions.largerText, 1}, {_actions.smallerText, -1}, {_actions.standardTextSize, 0}};
    for (const auto &step : steps)
        connect(step.first, &QAction::triggered, this,
                [this, points = step.second] { changeResultsFontSize(points, outlineView().font()); });
    connect(&UserDefaults::standard(), &UserDefaults::valueChanged, this, [this](const QString &key) {
        if (key == TD_USER_DEFAULTS_NAME_RESULTS_FONT_SIZE)
            _noteTextSize();
    });
    _noteTextSize();
}

void ResultsPane::_noteTextSize()
{
    const int size = resultsFont(outlineView().font()).pointSize();
    _actions.largerText->setEnabled(size < LARGEST_RESULTS_FONT);
    _actions.smallerText->setEnabled(size > SMALLEST_RESULTS_FONT);
    _actions.standardTextSize->setEnabled(
        UserDefaults::standard().integerForKey(TD_USER_DEFAULTS_NAME_RESULTS_FONT_SIZE) > 0);
}

void ResultsPane::_setUpFilter()
{
    _filterBox = new ResultsFilterBox(_document.findResults(), outlineView(), *_ui.resultsHeader, [this] {
        QList<FilePath> paths;
        for (const TDSearchLocation &location : _search.searchedLocations())
            paths << location.path();
        return paths;
    });
    connect(_actions.filterResults, &QAction::triggered, _filterBox, &ResultsFilterBox::open);
    // Nothing else changes the results while they are replaced in.
    connect(&_replace, &ReplaceControl::replacing, _filterBox, &QWidget::setDisabled);
    connect(&_replace, &ReplaceControl::replacing, _actions.filterResults, &QAction::setDisabled);
    connect(&_document.findResults(), &FindResults::filtered, this, &ResultsPane::_noteFilter);
}

void ResultsPane::_noteFilter()
{
    const auto &filter = _document.findResults().filter();
    _exportPanel.setFiltered(filter != nullptr);
    _showHint();
    _noteResults();
}

/// The lines of a small search are in sight without a further step.
void ResultsPane::_expandWhileFew(qsizetype first, qsizetype count)
{
    if (!UserDefaults::standard().boolForKey(TD_USER_DEFAULTS_NAME_EXPAND_RESULTS))
        return;
    for (qsizetype number = first; number < first + count; ++number) {
        const auto &file = _document.findResults().files()[number];
        _linesOfSearch += quint64(file->children().size());
        if (_linesOfSearch < SEARCH_EXPANDED_BELOW)
            outlineView().expandItem(_model.indexOf(file.get()));
    }
}

void ResultsPane::_noteResults()
{
    const bool isFree = !_replace.isReplacing();
    const bool hasResults = !_document.findResults().isEmpty();
    _actions.previousMatch->setEnabled(hasResults && !_navigation.firstItemSelected());
    _actions.nextMatch->setEnabled(hasResults && !_navigation.lastItemSelected());
    _actions.extendToNextMatch->setEnabled(hasResults && !_navigation.lastItemSelected());
    _actions.extendToPreviousMatch->setEnabled(hasResults && !_navigation.firstItemSelected());
    _actions.firstMatchInNextFile->setEnabled(_navigation.canMoveToNextFile());
    _actions.firstMatchInPreviousFile->setEnabled(_navigation.canMoveToPreviousFile());
    _actions.expandCollapseAll->setEnabled(hasResults);
    _actions.removeSelected->setEnabled(_navigation.selection().hasSelection() && isFree);
    const bool hasMatch = _navigation.hasMatchToReplace();
    const bool isRead = !_replaceCommands.isInFileStillRead();
    _actions.replace->setEnabled(hasMatch && isFree && isRead);
    _actions.replaceAndFind->setEnabled((hasMatch || _actions.nextMatch->isEnabled()) && isFree && isRead);
    // These run for a while and deliver events meanwhile; results that arrive then would come in between.
    const bool isComplete = hasResults && isFree && !_search.searching();
    _actions.replaceSelection->setEnabled(isComplete);
    _actions.replaceAll->setEnabled(isComplete);
    _resultsActions.setReadAsPossible(isComplete);
    _actions.exportResults->setEnabled(isComplete);
    _actions.history->setEnabled(isFree);
    _actions.deleteBackups->setEnabled(isFree);
}

/// Buttons that can't be pressed any more would hand the keyboard to whatever comes next; but somebody may be
/// typing meanwhile.
void ResultsPane::_focusResults()
{
    const QWidget *focused = outlineView().window()->focusWidget();
    if (qobject_cast<const QLineEdit *>(focused) == nullptr &&
        qobject_cast<const QComboBox *>(focused) == nullptr)
        outlineView().setFocus(Qt::OtherFocusReason);
}

void ResultsPane::_showReplacing(bool isReplacing)
{
    if (isReplacing) {
        _leftOutNotice.hide();
        _outcomeNotice.hide();
        outlineView().setFocus(Qt::OtherFocusReason);
    } else {
        _focusResults();
    }
    _navigation.setRemovalEnabled(!isReplacing);
    _ui.replaceProgressBar->setRange(0, 0);
    _ui.replaceProgressBar->setVisible(isReplacing);
    _ui.stopReplaceButton->setVisible(isReplacing);
    _ui.resultsStatusLabel->setWholeText(_document.resultsStatusText());
    _noteResults();
}

void ResultsPane::_showReplaceProgress(quint64 filesDone, quint64 fileCount)
{
    _countOfFilesToReplaceIn = fileCount;
    _ui.replaceProgressBar->setRange(0, int(fileCount));
    _ui.replaceProgressBar->setValue(int(filesDone));
    const QString progress =
        _replace.run() == ReplaceControl::Run::Undoing   ? localizedString("Undoing: %d of %d files done")
        : _replace.run() == ReplaceControl::Run::Redoing ? localizedString("Redoing: %d of %d files done")
                                                         : localizedString("Replacing: %d of %d files done");
    _ui.resultsStatusLabel->setWholeText(formatted(progress, {grouped(filesDone), grouped(fileCount)}));
}

void ResultsPane::_showOutcome(const TDSelectedMatchReplacement::Outcome &outcome)
{
    const bool hasBegun =
        outcome.replacements > 0 || outcome.unchangedFiles > 0 || !outcome.failures.empty() || !outcome.error;
    if (!hasBegun)
        return;
    const QString status = replacedStatus({.replacements = outcome.replacements,
                                           .filesRewritten = outcome.filesRewritten,
                                           .filesUnchanged = outcome.unchangedFiles,
                                           .unchangedMatches = outcome.unchangedMatches,
                                           .fileCount = _countOfFilesToReplaceIn,
                                           .stopped = outcome.stopped});
    const bool isFiltered = _document.findResults().filter() != nullptr;
    _document.setResultsStatusText(isFiltered ? status + localizedString(" • ") +
                                                    localizedString("only in the results that show")
                                              : status);
    _outcomeNotice.show(quint64(outcome.failures.size()),
                        outcome.undo == UndoKeeping::Kept ? outcome.undoStep : QByteArray());
    _announceStatus();
}

void ResultsPane::prepareForSearch()
{
    _kindsOfLastSearch = includedKindTitles();
    QStringList folders;
    for (const TDSearchLocation &location : _document.searchLocations()) {
        if (location.isFolder)
            folders << location.path().displayText();
    }
    outlineView().setLocationFolders(folders);
    outlineView().header()->setSortIndicator(-1, Qt::AscendingOrder);
    _model.sort(-1);
    outlineView().setHintText({});
}

void ResultsPane::searchFinished()
{
    _showHint();
    _announceStatus();
    if (!_navigation.selection().hasSelection())
        _navigation.selectFirstMatch();
    if (!_document.findText().isEmpty())
        outlineView().setFocus(Qt::OtherFocusReason);
}

/// What a run came to is worth interrupting for; changes on the way aren't.
void ResultsPane::_announceStatus()
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(_ui.resultsStatusLabel, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

/// The line on what is left out opens, so that the change is seen.
void ResultsPane::_leaveOut(const QString &pattern)
{
    UserDefaults &settings = UserDefaults::standard();
    const QString before = settings.stringForKey(TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS);
    settings.setObject(TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS, withPattern(before, pattern));
    settings.setObject(TD_USER_DEFAULTS_NAME_LEAVE_OUT_SHOWN, true);
}

void ResultsPane::_showHint()
{
    QString hint;
    const auto &filter = _document.findResults().filter();
    const bool hasSearched = _document.filesWithMatchesCount() != TD_NO_SEARCH_PERFORMED;
    const bool lacksLocations = _document.searchLocations().isEmpty();
    outlineView().emptyState().setButton({}, {});
    // They may come yet.
    if (_search.searching() && _document.findResults().countOfAll() == 0)
        return outlineView().setHintText({});
    if (filter && _document.findResults().countOfAll() > 0) {
        hint = formatted(localizedString("No result has “%@” in its path or line."), {filter->text()});
    } else if (hasSearched && lacksLocations) {
        hint = localizedString("Add a folder or a file to search first.");
        outlineView().emptyState().setButton(localizedString("Add Folder…"), tooltipAddLocation());
    } else if (!hasSearched || _document.findText().isEmpty() || _search.hasFailed()) {
        // Where the find text is missing, or malformed, its field says so.
        hint = localizedString("Lines with matches will appear here.");
    } else if (_document.findResults().isEmpty() && _search.wasStopped()) {
        hint = localizedString("The search was stopped before it found anything.");
    } else if (_document.findResults().isEmpty() &&
               !_leftOutNotice.showInEmptyResults(formatted(
                   localizedString("Kinds of files searched in folders: %@"), {_kindsOfLastSearch}))) {
        hint = formatted(localizedString("No matches found.\nKinds of files searched in folders: %@"),
                         {_kindsOfLastSearch});
    }
    outlineView().setHintText(hint);
}

} // namespace tidemark
