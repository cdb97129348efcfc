#include "window/results/ReplaceCommands.h"

#include "foundation/LocalizedText.h"
#include "session/ReplaceTexts.h"
#include "session/ResultsFilter.h"
#include "session/SearchControl.h"
#include "session/StayingMatches.h"
#include "window/ErrorSheet.h"
#include "window/results/ResultsNavigation.h"
#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include <utility>

namespace tidemark {

namespace {

QString counted(quint64 count, const char *one, const char *many)
{
    return formatted(localizedString(count == 1 ? one : many), {count});
}

} // namespace

bool ReplaceCommands::_suppressAlertReplaceSelection = false;

ReplaceCommands::ReplaceCommands(ReplaceControl &control, const SearchControl &search,
                                 ResultsTreeModel &model, TDSearchResultsOutlineView &view,
                                 ResultsNavigation &navigation, QObject *parent)
    : QObject(parent), _control(control), _search(search), _model(model), _view(view), _navigation(navigation)
{
    connect(&_control, &ReplaceControl::replacing, &_navigation,
            [this](bool isReplacing) { _navigation.setRemovalEnabled(!isReplacing); });
    // The rows agree with the files also on the way. A large file's matches take long to count.
    connect(&_control, &ReplaceControl::progressed, this, [this, shown = quint64(0)](quint64 done) mutable {
        if (std::exchange(shown, done) != done)
            _model.noteAllChanged();
    });
}

bool ReplaceCommands::_beginCommand()
{
    if (_control.isReplacing() || _hasSheet || _model.results().isEmpty())
        return false;
    _control.setStopReplace(false);
    return true;
}

// -- One match

bool ReplaceCommands::isInFileStillRead() const
{
    const auto item = _navigation.currentlySelectedMatchLineItem();
    return item && _search.mayGrow(item->parent() != nullptr ? *item->parent() : *item);
}

void ReplaceCommands::replace()
{
    if (isInFileStillRead() || !_beginCommand())
        return;
    _performReplace();
    _navigation.determineIfFirstOrLastItemSelected();
}

void ReplaceCommands::replaceAndFind()
{
    if (isInFileStillRead() || !_beginCommand())
        return;
    // With the key held down the last match would be replaced in its own replacement over and over.
    if (_currentMatch() == _lastReplaced)
        return;
    const ReplacedMatch replaced = _currentMatch();
    const bool standsOnNextMatch = _performReplace();
    if (!standsOnNextMatch)
        _navigation.moveToNextMatch();
    _lastReplaced = standsOnNextMatch || !(_currentMatch() == replaced) ? ReplacedMatch() : replaced;
    _navigation.determineIfFirstOrLastItemSelected();
}

ReplaceCommands::ReplacedMatch ReplaceCommands::_currentMatch() const
{
    const TDMatchLine *line = _navigation.currentlySelectedMatchLine();
    return {line, line != nullptr ? line->highlightedMatchIndex() : TD_NO_HIGHLIGHTED_MATCH,
            _control.findText(), _control.replaceText()};
}

bool ReplaceCommands::_performReplace()
{
    _navigation.showCurrentMatchLine();
    const auto item = _navigation.currentlySelectedMatchLineItem();
    if (!item || item->matchLine() == nullptr)
        return false;
    TDError error;
    const bool standsOnNextMatch = _control.replaceMatch(*item, error);
    // A replacement with line ends renumbers the lines behind it.
    _model.noteFileChanged(*item->parent());
    _navigation.scrollToHighlightedMatch();
    if (error)
        presentErrorSheet(_view.window(), error);
    return standsOnNextMatch;
}

// -- Asking

QString ReplaceCommands::_informativeText(const LinesByFile &lines) const
{
    ReplaceExtent extent = ReplaceExtent::of(lines);
    const SearchTerms terms = SearchTerms::withUserDefaults(_control.findText());
    const auto searched = _search.searchedTerms();
    const bool isStale = searched && *searched != terms;
    QString text = localizedString(extent.canBeUndone() ? "You can undo this with Edit > Undo."
                                                        : "This operation cannot easily be undone.") +
                   QStringLiteral("\n\n");
    if (extent.matches == 0)
        return text + localizedString(lines.size() > 0
                                          ? "These matches were replaced already, so nothing will change."
                                          : "No match is selected, so nothing will change.");
    std::optional<quint64> staying;
    // Without an expression a match is replaced whatever the find text.
    if (isStale && terms.isExpression()) {
        if (const auto some = stayingMatches(lines, terms, _control.replaceText())) {
            extent.matches -= some->matches;
            extent.files -= some->files;
            staying = some->matches;
        }
    }
    text += _changeText(extent);
    text += QStringLiteral("\n\n") + findAndReplaceTexts(terms.findText, _control.replaceText());
    if (isStale)
        text += QStringLiteral("\n\n") + staleResultsText(*searched, terms, staying);
    return text;
}

QString ReplaceCommands::_changeText(ReplaceExtent extent) const
{
    QString text = formatted(localizedString("%@ in %@ will change."),
                             {counted(extent.matches, "%lu match", "%lu matches"),
                              counted(extent.files, "%lu file", "%lu files")});
    if (const auto &filter = _model.results().filter())
        text += QLatin1Char(' ') +
                formatted(localizedString("That is only what the filter “%@” shows."), {filter->text()});
    if (_control.replaceText().isEmpty())
        text += QLatin1Char(' ') + localizedString("The replace text is empty: the matches will be deleted.");
    return text;
}

QMessageBox *ReplaceCommands::_ask(const QString &question, const QString &confirmation,
                                   const LinesByFile &lines, void (ReplaceCommands::*confirmed)())
{
    QMessageBox *sheet = makePlainSheet(_view.window(), question, _informativeText(lines));
    QPushButton *confirm = sheet->addButton(confirmation, QMessageBox::AcceptRole);
    QPushButton *cancel = sheet->addButton(localizedString("Cancel"), QMessageBox::RejectRole);
    sheet->setDefaultButton(confirm);
    sheet->setEscapeButton(cancel);
    _hasSheet = true;
    connect(sheet, &QObject::destroyed, this, [this] { _hasSheet = false; });
    connect(sheet, &QDialog::finished, this, [this, sheet, confirm, confirmed] {
        _hasSheet = false;
        // Queued: the sheet is off the screen before a long run begins.
        if (sheet->clickedButton() == confirm)
            QMetaObject::invokeMethod(this, confirmed, Qt::QueuedConnection);
    });
    return sheet;
}

void ReplaceCommands::replaceSelection()
{
    if (!_beginCommand())
        return;
    if (_suppressAlertReplaceSelection) {
        _selectionConfirmed();
        return;
    }
    QMessageBox *sheet =
        _ask(localizedString("Replace all selected occurrences of the find text with the replace text?"),
             localizedString("Replace Selection"), _navigation.selection().selectedObjects(),
             &ReplaceCommands::_selectionConfirmed);
    auto *suppress = new QCheckBox(localizedString("Do not show this message again"));
    sheet->setCheckBox(suppress);
    // Whatever button ends the sheet.
    connect(sheet, &QDialog::finished, this,
            [suppress] { _suppressAlertReplaceSelection = suppress->isChecked(); });
    sheet->open();
}

void ReplaceCommands::replaceAll()
{
    if (!_beginCommand())
        return;
    _ask(localizedString(
             "Replace all occurrences of the find text with the replace text in all files listed in the "
             "search results?"),
         localizedString("Replace All"), LinesByFile::ofFiles(_model.results().files()),
         &ReplaceCommands::_allConfirmed)
        ->open();
}

// -- Many matches

FindResultItems ReplaceCommands::allItems() const
{
    FindResultItems files;
    for (int row = 0; row < int(_model.results().count()); ++row)
        files << _model.file(row);
    return filesAndLines(files);
}

void ReplaceCommands::_selectionConfirmed()
{
    _replaceMatches(_navigation.selection().selectedObjects());
}

void ReplaceCommands::_allConfirmed()
{
    _view.expandAll();
    _view.selectAll();
    _replaceMatches(LinesByFile::ofFiles(_model.results().files()),
                    [this] { _navigation.selectFirstMatch(); });
}

void ReplaceCommands::_replaceMatches(const LinesByFile &lines, const std::function<void()> &afterwards)
{
    // Events may take away the window, and with it this object and the results.
    FindResultItems files = _model.results().files();
    _control.replaceMatches(lines,
                            [self = QPointer(this), afterwards](const ReplaceControl::Outcome &outcome) {
                                if (self)
                                    self->_showEnd(outcome, afterwards);
                            });
    releaseInBackground(std::move(files));
}

void ReplaceCommands::_showEnd(const ReplaceControl::Outcome &outcome,
                               const std::function<void()> &afterwards)
{
    _lastReplaced = {};
    // Selecting among a million lines takes a while, and whoever closed the window or quits sees none of it.
    if (!_view.isVisible())
        return;
    const QPointer self(this);
    _model.noteAllChanged([] { QCoreApplication::processEvents(); });
    if (!self)
        return;
    if (afterwards)
        afterwards();
    _navigation.determineIfFirstOrLastItemSelected();
    if (outcome.error)
        presentErrorSheet(_view.window(), outcome.error, failedFilesText(outcome.failures));
}

} // namespace tidemark
