#include "window/form/SearchForm.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "session/SearchControl.h"
#include "ui_MyDocument.h"
#include "window/ApplicationDelegate.h"
#include "window/DropTarget.h"
#include "window/EmptyState.h"
#include "window/SearchWindow.h"
#include "window/SearchWindowActions.h"
#include "window/SearchWindowTexts.h"
#include "window/Symbols.h"
#include "window/WindowedDocument.h"
#include "window/form/BoundOptions.h"
#include "window/form/FieldMessages.h"
#include "window/form/LeaveOutForm.h"
#include "window/locations/SearchLocationsController.h"
#include "window/locations/TDTableViewDragDropArrayController.h"
#include "window/results/ResultsFont.h"
#include "window/results/ShiftedMatchesNotice.h"

#include <QAction>
#include <QLineEdit>

namespace tidemark {

namespace {

int widthForEither(QPushButton *button, const QString &one, const QString &other)
{
    const QString shown = button->text();
    button->setText(one);
    const int width = button->sizeHint().width();
    button->setText(other);
    const int otherWidth = button->sizeHint().width();
    button->setText(shown);
    return qMax(width, otherWidth);
}

} // namespace

SearchForm::SearchForm(WindowedDocument &document, SearchWindow &window, const SearchWindowActions &actions,
                       SearchControl &search, SearchLocationsController &locations)
    : _document(document), _ui(window.ui()), _actions(actions), _search(search), _locations(locations),
      _locationsModel(new TDTableViewDragDropArrayController(document, this))
{
    _setUpLooks();
    _setUpToolTips();
    _setUpFields();
    _setUpOptions();
    _setUpLocations();
    _setUpStartStop();
    connect(&window, &SearchWindow::activated, _locationsModel,
            &TDTableViewDragDropArrayController::refreshExistence);
}

void SearchForm::_setUpLooks()
{
    showSymbol(_ui.addLocationButton, Symbol::Add);
    showSymbol(_ui.removeLocationButton, Symbol::Remove);
    for (HistoryComboBox *field : {_ui.findTextComboBox, _ui.replaceTextComboBox, _ui.leaveOutComboBox})
        field->setFont(fixedPitchFont(field->font()));
    _ui.optionsRow->setControls(
        {_ui.ignoreCaseCheckBox, _ui.wholeWordsCheckBox, _ui.regularExpressionCheckBox, _ui.unicodeCheckBox},
        {_ui.fileTypesButton, _ui.moreButton});
    _ui.leaveOutOptions->setControls(
        {_ui.hiddenFilesCheckBox, _ui.ignoreFilesCheckBox, _ui.largestSizeCheckBox, _ui.largestSizeSpinBox});
    _ui.progressIndicator->setShareDone([this] { return _search.shareDone(); });
}

void SearchForm::_setUpToolTips()
{
    _ui.addLocationButton->setToolTip(tooltipAddLocation());
    _ui.removeLocationButton->setToolTip(tooltipRemoveLocation());
    _ui.searchLocationsTableView->setToolTip(tooltipSearchLocations());
    _ui.findTextComboBox->setToolTip(tooltipFindText());
    _ui.replaceTextComboBox->setToolTip(tooltipReplaceText());
    _ui.ignoreCaseCheckBox->setToolTip(tooltipIgnoreCase());
    _ui.regularExpressionCheckBox->setToolTip(tooltipRegularExpression());
    _ui.unicodeCheckBox->setToolTip(tooltipUnicode());
    _ui.wholeWordsCheckBox->setToolTip(tooltipWholeWords());
    _ui.fileTypesButton->setToolTip(tooltipFileTypes());
    _ui.startStopButton->setToolTip(tooltipStartStopSearch());
}

void SearchForm::_setUpFields()
{
    UserDefaults &settings = UserDefaults::standard();
    HistoryComboBox *find = _ui.findTextComboBox;
    HistoryComboBox *replace = _ui.replaceTextComboBox;
    find->bindHistory(settings, TD_USER_DEFAULTS_NAME_FIND_TEXT_HISTORY);
    replace->bindHistory(settings, TD_USER_DEFAULTS_NAME_REPLACE_TEXT_HISTORY);
    find->setText(_document.findText());
    replace->setText(_document.replaceText());
    connect(find, &QComboBox::editTextChanged, &_document, &MyDocument::setFindText);
    connect(replace, &QComboBox::editTextChanged, &_document, &MyDocument::setReplaceText);
    connect(&_document, &MyDocument::findTextChanged, find,
            [this, find] { find->setText(_document.findText()); });
    connect(&_document, &MyDocument::replaceTextChanged, replace,
            [this, replace] { replace->setText(_document.replaceText()); });
    connect(find, &HistoryComboBox::returnPressed, this, &SearchForm::startRequested);
}

void SearchForm::_setUpOptions()
{
    UserDefaults &settings = UserDefaults::standard();
    bindOption(_ui.ignoreCaseCheckBox, settings, TD_USER_DEFAULTS_NAME_IGNORE_CASE);
    bindOption(_actions.ignoreCase, settings, TD_USER_DEFAULTS_NAME_IGNORE_CASE);
    bindOption(_ui.regularExpressionCheckBox, settings, TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION);
    bindOption(_actions.regularExpression, settings, TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION);
    bindOption(_ui.unicodeCheckBox, settings, TD_USER_DEFAULTS_NAME_UNICODE_REGULAR_EXPRESSION);
    bindOption(_actions.unicode, settings, TD_USER_DEFAULTS_NAME_UNICODE_REGULAR_EXPRESSION);
    bindOption(_ui.wholeWordsCheckBox, settings, TD_USER_DEFAULTS_NAME_WHOLE_WORDS);
    bindOption(_actions.wholeWords, settings, TD_USER_DEFAULTS_NAME_WHOLE_WORDS);
    const auto enableUnicode = [this](bool isExpression) {
        _ui.unicodeCheckBox->setEnabled(isExpression);
        _actions.unicode->setEnabled(isExpression);
    };
    connect(_ui.regularExpressionCheckBox, &QCheckBox::toggled, this, enableUnicode);
    enableUnicode(_ui.regularExpressionCheckBox->isChecked());
    auto *messages = new FieldMessages(_document, _ui, this);
    connect(&_search, &SearchControl::searchFinished, messages, &FieldMessages::tellIfFindTextIsMissing);
    connect(new LeaveOutForm(_ui, this), &LeaveOutForm::startRequested, this, &SearchForm::startRequested);
    auto *notice = new ShiftedMatchesNotice(*_ui.shiftedMatchesLabel, _search, this);
    connect(notice, &ShiftedMatchesNotice::searchRequested, this, &SearchForm::startRequested);
    connect(_ui.fileTypesButton, &QPushButton::clicked, this, &SearchForm::showFileTypes);
    connect(_actions.fileTypes, &QAction::triggered, this, &SearchForm::showFileTypes);
}

void SearchForm::_setUpLocations()
{
    TDSearchLocationsTableView *table = _ui.searchLocationsTableView;
    table->setModel(_locationsModel);
    table->setHintText(localizedString("Drop files and folders here, or press + to add them."));
    table->emptyState().setButton(localizedString("Add Folder…"), tooltipAddLocation());
    connect(&table->emptyState(), &EmptyState::buttonClicked, this, &SearchForm::addLocationRequested);
    _locationsModel->setDropFilesReceiver(
        [this](const QList<FilePath> &paths) { _locations.dropFiles(paths); });
    connect(_ui.addLocationButton, &QToolButton::clicked, this, &SearchForm::addLocationRequested);
    connect(_actions.addLocation, &QAction::triggered, this, &SearchForm::addLocationRequested);
    connect(_ui.removeLocationButton, &QToolButton::clicked, this, &SearchForm::_removeSelectedLocations);
    connect(_actions.removeLocation, &QAction::triggered, this, &SearchForm::_removeSelectedLocations);
    connect(table, &TDSearchLocationsTableView::removeRequested, this, &SearchForm::_removeSelectedLocations);
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &SearchForm::_noteSelectedLocations);
    connect(_locationsModel, &QAbstractItemModel::modelReset, this, &SearchForm::_noteSelectedLocations);
    _noteSelectedLocations();
}

void SearchForm::_setUpStartStop()
{
    QPushButton *button = _ui.startStopButton;
    button->setMinimumWidth(widthForEither(button, searchButtonTitleStart(), searchButtonTitleStop()));
    connect(button, &QPushButton::clicked, _actions.startStopSearch, &QAction::trigger);
    connect(&_search, &SearchControl::searchingChanged, this, &SearchForm::_showSearching);
    _showSearching(false);
}

void SearchForm::_removeSelectedLocations()
{
    const QList<int> rows = _ui.searchLocationsTableView->selectedRowNumbers();
    if (rows.isEmpty() || _locationsModel->isReadOnly())
        return;
    _locationsModel->removeRowsAt(rows);
    const int next = qMin(rows.first(), _locationsModel->rowCount() - 1);
    if (next >= 0)
        _ui.searchLocationsTableView->selectRow(next);
}

void SearchForm::_noteSelectedLocations()
{
    const bool hasSelection = _ui.searchLocationsTableView->selectionModel()->hasSelection();
    const bool isChangeable = !_locationsModel->isReadOnly();
    _ui.addLocationButton->setEnabled(isChangeable);
    _actions.addLocation->setEnabled(isChangeable);
    _ui.removeLocationButton->setEnabled(hasSelection && isChangeable);
    _actions.removeLocation->setEnabled(hasSelection && isChangeable);
}

void SearchForm::setLocationsReadOnly(bool readOnly)
{
    _locationsModel->setReadOnly(readOnly);
    _locations.setReadOnly(readOnly);
    _noteSelectedLocations();
}

void SearchForm::_showSearching(bool searching)
{
    const QString title = searching ? searchButtonTitleStop() : searchButtonTitleStart();
    _ui.startStopButton->setText(title);
    _actions.startStopSearch->setText(title);
    _ui.progressIndicator->setVisible(searching);
    _locations.setAcceptsDrops(!searching);
    _locationsModel->refreshExistence();
}

void SearchForm::setSearchEnabled(bool enabled)
{
    _ui.startStopButton->setEnabled(enabled);
    _actions.startStopSearch->setEnabled(enabled);
}

void SearchForm::focusFindText()
{
    _ui.findTextComboBox->setFocus(Qt::OtherFocusReason);
    _ui.findTextComboBox->lineEdit()->selectAll();
}

void SearchForm::takeDropsAnywhere(SearchWindow &window)
{
    new DropTarget(window, *_locationsModel, _locations, this);
}

void SearchForm::showFileTypes()
{
    _document.application().showPreferencePanelAndSelectFileTypesTab();
}

} // namespace tidemark
