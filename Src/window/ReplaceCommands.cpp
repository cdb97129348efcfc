#include "window/ReplaceCommands.h"

#include "foundation/LocalizedText.h"
#include "window/ErrorSheet.h"
#include "window/ReplaceTexts.h"
#include "window/ResultsNavigation.h"
#include "window/ResultsTreeModel.h"
#include "window/TDSearchResultsOutlineView.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSet>

#include <utility>

namespace tidemark {

namespace {

constexpr qint64 MILLISECONDS_BETWEEN_EVENTS = 50;

QString counted(quint64 count, const char *one, const char *many)
{
    return formatted(localizedString(count == 1 ? one : many), {count});
}

} // namespace

bool ReplaceCommands::_suppressAlertReplaceSelection = false;

ReplaceCommands::ReplaceCommands(ResultsTreeModel &model, TDSearchResultsOutlineView &view,
                                 ResultsNavigation &navigation, ReplaceContext context, QObject *parent)
    : QObject(parent), _model(model), _view(view), _navigation(navigation), _context(std::move(context)),
      _stopReplace(std::make_shared<std::atomic<bool>>(false))
{
    connect(this, &ReplaceCommands::replacing, &_navigation,
            [this](bool isReplacing) { _navigation.setRemovalEnabled(!isReplacing); });
}

ReplaceCommands::~ReplaceCommands()
{
    *_stopReplace = true;
    if (_isReplacing)
        _context.decreaseBusyWindowCount();
}

bool ReplaceCommands::_beginCommand()
{
    if (_isReplacing || _hasSheet || _model.results().isEmpty())
        return false;
    *_stopReplace = false;
    return true;
}

ReplaceRequest ReplaceCommands::_request() const
{
    return {_context.findText(), _context.replaceText(), _context.isFileInSearchLocations};
}

// -- One match

void ReplaceCommands::replace()
{
    if (!_beginCommand())
        return;
    _context.increaseBusyWindowCount();
    _performReplace();
    _navigation.determineIfFirstOrLastItemSelected();
    _context.decreaseBusyWindowCount();
}

void ReplaceCommands::replaceAndFind()
{
    if (!_beginCommand())
        return;
    // With the key held down the last match would be replaced in its own replacement over and over.
    if (_currentMatch() == _lastReplaced)
        return;
    _context.increaseBusyWindowCount();
    const ReplacedMatch replaced = _currentMatch();
    const bool standsOnNextMatch = _performReplace();
    if (!standsOnNextMatch)
        _navigation.moveToNextMatch();
    _lastReplaced = standsOnNextMatch || !(_currentMatch() == replaced) ? ReplacedMatch() : replaced;
    _navigation.determineIfFirstOrLastItemSelected();
    _context.decreaseBusyWindowCount();
}

ReplaceCommands::ReplacedMatch ReplaceCommands::_currentMatch() const
{
    const TDMatchLine *line = _navigation.currentlySelectedMatchLine();
    return {line, line != nullptr ? line->highlightedMatchIndex() : TD_NO_HIGHLIGHTED_MATCH,
            _context.findText(), _context.replaceText()};
}

bool ReplaceCommands::_performReplace()
{
    _navigation.showCurrentMatchLine();
    const auto item = _navigation.currentlySelectedMatchLineItem();
    if (!item || item->matchLine() == nullptr)
        return false;
    TDError error;
    const bool standsOnNextMatch =
        TDReplaceEngine::performReplaceWithSave(TDReplaceEngine::Save::Yes, *item, _request(), error);
    // A replacement with line ends renumbers the lines behind it.
    _model.noteFileChanged(*item->parent());
    _navigation.scrollToHighlightedMatch();
    if (error)
        presentErrorSheet(_view.window(), error);
    return standsOnNextMatch;
}

// -- Asking

ReplaceCommands::Extent ReplaceCommands::_extentOf(const FindResultItems &items)
{
    Extent extent;
    QSet<const TDFindResultItem *> files;
    for (const auto &item : items) {
        if (item->matchLine() == nullptr || item->matchLine()->numberOfMatches() == 0)
            continue;
        extent.matches += item->matchLine()->numberOfMatches();
        files.insert(item->parent());
    }
    extent.files = quint64(files.size());
    return extent;
}

QString ReplaceCommands::_informativeText(Extent extent) const
{
    QString text = localizedString("This operation cannot easily be undone.") + QStringLiteral("\n\n");
    if (extent.matches == 0)
        return text + localizedString("No match is selected, so nothing will change.");
    text += formatted(localizedString("%@ in %@ will change."),
                      {counted(extent.matches, "%lu match", "%lu matches"),
                       counted(extent.files, "%lu file", "%lu files")});
    if (_context.replaceText().isEmpty())
        text += QLatin1Char(' ') + localizedString("The replace text is empty: the matches will be deleted.");
    const SearchTerms terms = SearchTerms::withUserDefaults(_context.findText());
    text += QStringLiteral("\n\n") + findAndReplaceTexts(terms.findText, _context.replaceText());
    if (const auto searched = _context.searchedTerms(); searched && *searched != terms)
        text += QStringLiteral("\n\n") + staleResultsText(*searched, terms);
    return text;
}

QMessageBox *ReplaceCommands::_ask(const QString &question, const QString &confirmation, Extent extent,
                                   void (ReplaceCommands::*confirmed)())
{
    QMessageBox *sheet = makePlainSheet(_view.window(), question, _informativeText(extent));
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
             localizedString("Replace Selection"), _extentOf(_navigation.selectedObjects()),
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
         localizedString("Replace All"), _extentOf(_allItems()), &ReplaceCommands::_allConfirmed)
        ->open();
}

// -- Many matches

FindResultItems ReplaceCommands::_allItems() const
{
    FindResultItems items;
    for (int row = 0; row < int(_model.results().count()); ++row) {
        items << _model.file(row);
        items << _model.file(row)->children();
    }
    return items;
}

void ReplaceCommands::_selectionConfirmed()
{
    _replaceSelectedMatches(_navigation.selectedObjects());
}

void ReplaceCommands::_allConfirmed()
{
    _view.expandAll();
    _view.selectAll();
    _replaceSelectedMatches(_allItems(), [this] { _navigation.selectFirstMatch(); });
}

TDSelectedMatchReplacement::BetweenFiles ReplaceCommands::_deliverEvents(quint64 fileCount)
{
    return [self = QPointer(this), fileCount, timer = QElapsedTimer()](quint64 filesDone) mutable {
        if (timer.isValid() && timer.elapsed() < MILLISECONDS_BETWEEN_EVENTS)
            return;
        if (self) {
            // The rows agree with the files also on the way.
            self->_model.noteAllChanged();
            Q_EMIT self->progressed(filesDone, fileCount);
        }
        QCoreApplication::processEvents();
        timer.start();
    };
}

void ReplaceCommands::_replaceSelectedMatches(const FindResultItems &items,
                                              const std::function<void()> &afterwards)
{
    if (_isReplacing)
        return;
    // Events may take away the window, and with it this object; the run then ends on what it holds itself.
    const QPointer self(this);
    const auto stop = _stopReplace;
    const FindResultItems files = _model.results().files();
    const quint64 fileCount = _extentOf(items).files;
    ReplaceRequest request = _request();
    request.isFileInSearchLocations = [self, asked = request.isFileInSearchLocations](const FilePath &path) {
        return self && asked(path);
    };
    *stop = false;
    _isReplacing = true;
    _context.increaseBusyWindowCount();
    Q_EMIT replacing(true);
    Q_EMIT progressed(0, fileCount);
    const auto outcome =
        TDSelectedMatchReplacement(request, *stop, _deliverEvents(fileCount)).replaceSelectedMatches(items);
    if (self)
        _endRun(outcome, afterwards);
}

void ReplaceCommands::_showEnd(const TDSelectedMatchReplacement::Outcome &outcome,
                               const std::function<void()> &afterwards)
{
    _model.noteAllChanged();
    if (afterwards)
        afterwards();
    _navigation.determineIfFirstOrLastItemSelected();
    if (outcome.error)
        presentErrorSheet(_view.window(), outcome.error, failedFilesText(outcome.failures));
}

void ReplaceCommands::_endRun(const TDSelectedMatchReplacement::Outcome &outcome,
                              const std::function<void()> &afterwards)
{
    _lastReplaced = {};
    // Selecting among a million lines takes a while, and whoever closed the window or quits sees none of it.
    if (_view.isVisible())
        _showEnd(outcome, afterwards);
    _isReplacing = false;
    _context.decreaseBusyWindowCount();
    Q_EMIT finished(outcome);
    // The last thing: a window that waited for this may go away now.
    Q_EMIT replacing(false);
}

} // namespace tidemark
