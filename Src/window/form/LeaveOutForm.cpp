#include "window/form/LeaveOutForm.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "search/LeaveOutPattern.h"
#include "ui_MyDocument.h"
#include "window/form/BoundOptions.h"

#include <QLineEdit>
#include <QScopedValueRollback>

#include <algorithm>

namespace tidemark {

namespace {

constexpr qint64 BYTES_IN_MEGABYTE = 1'000'000;

const char *formatFor(IgnorePattern::Fault fault)
{
    switch (fault) {
    case IgnorePattern::Fault::OpenClass:
        return "“%@” matches nothing: its bracket is not closed.";
    case IgnorePattern::Fault::UnknownClass:
        return "“%@” matches nothing: there is no such class.";
    case IgnorePattern::Fault::LoneBackslash:
        return "“%@” matches nothing: it ends in a backslash.";
    default:
        return "“%@” matches nothing: it names no file.";
    }
}

bool leavesSomethingOut(const UserDefaults &settings)
{
    return !settings.stringForKey(TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS).trimmed().isEmpty() ||
           settings.boolForKey(TD_USER_DEFAULTS_NAME_SEARCH_HIDDEN_FILES) ||
           settings.boolForKey(TD_USER_DEFAULTS_NAME_OBEY_IGNORE_FILES) ||
           settings.integerForKey(TD_USER_DEFAULTS_NAME_LARGEST_FILE_SIZE) > 0;
}

} // namespace

LeaveOutForm::LeaveOutForm(Ui::MyDocument &ui, QObject *parent) : QObject(parent), _ui(ui)
{
    UserDefaults &settings = UserDefaults::standard();
    _setUpField();
    bindOption(_ui.hiddenFilesCheckBox, settings, TD_USER_DEFAULTS_NAME_SEARCH_HIDDEN_FILES);
    bindOption(_ui.ignoreFilesCheckBox, settings, TD_USER_DEFAULTS_NAME_OBEY_IGNORE_FILES);
    _ui.hiddenFilesCheckBox->setToolTip(
        localizedString("Check to search files and folders whose names begin with a dot, too."));
    _ui.ignoreFilesCheckBox->setToolTip(
        localizedString("Check to leave out what the ignore files of Git (.gitignore) and .ignore name."));
    _setUpSize();
    _setUpMore();
    connect(&settings, &UserDefaults::valueChanged, this, &LeaveOutForm::_follow);
}

void LeaveOutForm::_setUpField()
{
    UserDefaults &settings = UserDefaults::standard();
    HistoryComboBox *field = _ui.leaveOutComboBox;
    field->bindHistory(settings, TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS_HISTORY);
    field->setText(settings.stringForKey(TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS));
    const QString help = localizedString("Patterns separated by commas or spaces, as in an ignore file: "
                                         "node_modules/ *.min.js !keep.min.js");
    field->setToolTip(help);
    field->lineEdit()->setPlaceholderText(help);
    QFont font = _ui.leaveOutMessageLabel->font();
    font.setPointSizeF(font.pointSizeF() * 0.9);
    _ui.leaveOutMessageLabel->setFont(font);
    connect(field, &QComboBox::editTextChanged, this, [](const QString &text) {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS, text);
    });
    connect(field, &HistoryComboBox::returnPressed, this, &LeaveOutForm::startRequested);
}

void LeaveOutForm::_setUpSize()
{
    _ui.largestSizeSpinBox->setSuffix(localizedString(" MB"));
    _ui.largestSizeSpinBox->setGroupSeparatorShown(true);
    _showSize();
    connect(_ui.largestSizeCheckBox, &QCheckBox::toggled, this, &LeaveOutForm::_storeSize);
    connect(_ui.largestSizeSpinBox, &QSpinBox::valueChanged, this, &LeaveOutForm::_storeSize);
}

void LeaveOutForm::_setUpMore()
{
    _ui.moreButton->setToolTip(localizedString("Show or hide what a search leaves out."));
    bindOption(_ui.moreButton, UserDefaults::standard(), TD_USER_DEFAULTS_NAME_LEAVE_OUT_SHOWN);
    connect(_ui.moreButton, &QToolButton::toggled, this, &LeaveOutForm::_showOrHide);
    _showOrHide();
}

void LeaveOutForm::_follow(const QString &key)
{
    if (key == TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS)
        _ui.leaveOutComboBox->setText(UserDefaults::standard().stringForKey(key));
    else if (key == TD_USER_DEFAULTS_NAME_LARGEST_FILE_SIZE)
        _showSize();
    _showOrHide();
}

/// Without a limit the number stays that of the one before.
void LeaveOutForm::_showSize()
{
    const QScopedValueRollback showing(_isShowingSize, true);
    const qint64 size = UserDefaults::standard().integerForKey(TD_USER_DEFAULTS_NAME_LARGEST_FILE_SIZE);
    _ui.largestSizeCheckBox->setChecked(size > 0);
    _ui.largestSizeSpinBox->setEnabled(size > 0);
    if (size > 0)
        _ui.largestSizeSpinBox->setValue(
            int(std::clamp<qint64>(size / BYTES_IN_MEGABYTE, 1, _ui.largestSizeSpinBox->maximum())));
}

void LeaveOutForm::_storeSize()
{
    if (_isShowingSize)
        return;
    const qint64 size =
        _ui.largestSizeCheckBox->isChecked() ? _ui.largestSizeSpinBox->value() * BYTES_IN_MEGABYTE : 0;
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_LARGEST_FILE_SIZE, size);
}

void LeaveOutForm::_showFault()
{
    const std::optional<PatternFault> fault = faultOfPatterns(_ui.leaveOutComboBox->currentText());
    _ui.leaveOutMessageLabel->setWholeText(
        fault ? formatted(localizedString(formatFor(fault->fault)), {fault->pattern}) : QString());
    _ui.leaveOutMessageLabel->setVisible(fault.has_value() && _ui.moreButton->isChecked());
}

void LeaveOutForm::_showOrHide()
{
    const bool isShown = _ui.moreButton->isChecked();
    _ui.leaveOutLabel->setVisible(isShown);
    _ui.leaveOutComboBox->setVisible(isShown);
    _ui.leaveOutOptions->setVisible(isShown);
    _ui.moreButton->setArrowType(isShown ? Qt::DownArrow : Qt::RightArrow);
    // What is in force isn't hidden with the line.
    const bool tells = !isShown && leavesSomethingOut(UserDefaults::standard());
    _ui.moreButton->setText(tells ? localizedString("&More •") : localizedString("&More"));
    _showFault();
}

} // namespace tidemark
