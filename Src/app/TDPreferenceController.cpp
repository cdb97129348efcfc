#include "app/TDPreferenceController.h"

#include "app/KindsEditor.h"
#include "app/TDApplicationController.h"
#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "session/Editors.h"
#include "ui_Preferences.h"
#include "window/form/BoundOptions.h"

#include <QScreen>
#include <QSignalBlocker>
#include <QStandardItemModel>

#include <algorithm>
#include <limits>

namespace tidemark {

namespace {

constexpr int FILE_TYPES_TAB = 1;

/// The setting is read as a signed 32-bit number, which greater numbers don't survive.
bool canBeDefault(const TDStringEncoding &encoding)
{
    return encoding.stringEncodingId() <= quint64(std::numeric_limits<qint32>::max());
}

void centre(QWidget &window)
{
    const QRect room = window.screen()->availableGeometry();
    window.move(room.center() - QPoint(window.width() / 2, window.height() / 2));
}

} // namespace

TDPreferenceController::TDPreferenceController(TDApplicationController &application)
    : _application(application), _settings(UserDefaults::standard()), _ui(std::make_unique<Ui::Preferences>())
{
    _ui->setupUi(&_window);
    // Alone, it keeps no application running.
    _window.setAttribute(Qt::WA_QuitOnClose, false);
    autoDetectCharEncodingFromFile = _ui->autoDetectCharEncodingFromFile;
    tabView = _ui->tabView;
    _setUpEncodings();
    bindOption(_ui->createBackupCheckBox, _settings, TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING);
    _setUpHistoryMaximum();
    _setUpKinds();
    _setUpEditors();
    connect(&_settings, &UserDefaults::valueChanged, this, &TDPreferenceController::_settingChanged);
    connect(_ui->closeButton, &QPushButton::clicked, &_window, &QWidget::close);
}

TDPreferenceController::~TDPreferenceController() = default;

void TDPreferenceController::_setUpEncodings()
{
    bindOption(autoDetectCharEncodingFromFile, _settings,
               TD_USER_DEFAULTS_NAME_AUTO_DETECT_FILE_ENCODING_FROM_FILE);
    connect(autoDetectCharEncodingFromFile, &QCheckBox::clicked, this,
            &TDPreferenceController::changeAutoDetectCharEncodingFromFile);
    QComboBox *popup = _ui->defaultEncodingComboBox;
    auto *items = qobject_cast<QStandardItemModel *>(popup->model());
    for (const TDStringEncoding &encoding : availableEncodings()) {
        popup->addItem(encoding.localizedName());
        if (items == nullptr || canBeDefault(encoding))
            continue;
        QStandardItem *item = items->item(popup->count() - 1);
        item->setEnabled(false);
        item->setToolTip(
            localizedString("Files in this encoding are recognised, but it cannot be the default."));
    }
    _showDefaultEncoding();
    connect(popup, &QComboBox::currentIndexChanged, this, [](int index) {
        if (index >= 0)
            setDefaultEncoding(availableEncodings()[size_t(index)]);
    });
}

void TDPreferenceController::_setUpHistoryMaximum()
{
    _showHistoryMaximum();
    connect(_ui->historyMaximumSpinBox, &QSpinBox::valueChanged, &_settings, [this](int maximum) {
        _settings.setObject(TD_USER_DEFAULTS_NAME_FIND_REPLACE_TEXT_HISTORY_MAXIMUM, maximum);
    });
}

void TDPreferenceController::_setUpKinds()
{
    _kinds.setKinds(_application.kinds());
    _kindsEditor = new KindsEditor(*_ui, _kinds, this);
    connect(&_kinds, &KindsModel::edited, &_application, &TDApplicationController::setKinds);
    connect(&_application, &TDApplicationController::kindsChanged, &_kinds,
            [this] { _kinds.setKinds(_application.kinds()); });
}

void TDPreferenceController::_setUpEditors()
{
    _ui->editorComboBox->addItem(localizedString("The desktop's default program, at the beginning"),
                                 TD_EDITOR_OF_DESKTOP);
    for (const Editor &editor : installedEditors())
        _ui->editorComboBox->addItem(editor.name, editor.id);
    _ui->editorComboBox->addItem(localizedString("A command of my own"), TD_EDITOR_OF_ONES_OWN);
    _showEditor();
    connect(_ui->editorComboBox, &QComboBox::activated, this, [this] {
        _settings.setObject(TD_USER_DEFAULTS_NAME_EDITOR, _ui->editorComboBox->currentData());
    });
    connect(_ui->editorCommandField, &QLineEdit::textEdited, this, [this](const QString &command) {
        _settings.setObject(TD_USER_DEFAULTS_NAME_EDITOR_COMMAND, command);
    });
}

/// An editor that isn't installed any more counts as the desktop's.
void TDPreferenceController::_showEditor()
{
    const int index =
        std::max(0, _ui->editorComboBox->findData(_settings.stringForKey(TD_USER_DEFAULTS_NAME_EDITOR)));
    _ui->editorComboBox->setCurrentIndex(index);
    _ui->editorCommandField->setEnabled(_ui->editorComboBox->currentData() == TD_EDITOR_OF_ONES_OWN);
    const QString command = _settings.stringForKey(TD_USER_DEFAULTS_NAME_EDITOR_COMMAND);
    if (_ui->editorCommandField->text() != command)
        _ui->editorCommandField->setText(command);
}

void TDPreferenceController::_settingChanged(const QString &key)
{
    if (key == TD_USER_DEFAULTS_NAME_EDITOR || key == TD_USER_DEFAULTS_NAME_EDITOR_COMMAND)
        _showEditor();
    if (key == TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING)
        _showDefaultEncoding();
    else if (key == TD_USER_DEFAULTS_NAME_FIND_REPLACE_TEXT_HISTORY_MAXIMUM)
        _showHistoryMaximum();
}

void TDPreferenceController::_showDefaultEncoding()
{
    const TDStringEncoding *encoding = defaultEncoding();
    const QSignalBlocker blocker(_ui->defaultEncodingComboBox);
    _ui->defaultEncodingComboBox->setCurrentIndex(
        encoding == nullptr ? -1 : int(encoding - availableEncodings().data()));
    _ui->encodingRemarkLabel->setText(
        encoding == nullptr
            ? localizedString(
                  "No usable encoding is chosen: files whose encoding is not detected cannot be read.")
            : localizedString(
                  "For files whose encoding is not detected, and for all files while detection is off."));
}

void TDPreferenceController::_showHistoryMaximum()
{
    const qint64 maximum = _settings.integerForKey(TD_USER_DEFAULTS_NAME_FIND_REPLACE_TEXT_HISTORY_MAXIMUM);
    QSpinBox *field = _ui->historyMaximumSpinBox;
    const QSignalBlocker blocker(field);
    // What is stored stays as it is until a person changes it. A negative number stands for no limit.
    field->setValue(maximum < 0 ? field->maximum() : int(std::min<qint64>(maximum, field->maximum())));
}

void TDPreferenceController::showWindow()
{
    if (!_window.isVisible()) {
        _window.adjustSize();
        centre(_window);
    }
    _window.show();
    _window.raise();
    _window.activateWindow();
}

void TDPreferenceController::showFileTypesTab()
{
    tabView->setCurrentIndex(FILE_TYPES_TAB);
    _kindsEditor->focusList();
}

const std::vector<TDStringEncoding> &TDPreferenceController::availableEncodings()
{
    return TDStringEncoding::availableEncodings();
}

const TDStringEncoding *TDPreferenceController::defaultEncoding()
{
    return TDStringEncoding::defaultEncoding();
}

void TDPreferenceController::setDefaultEncoding(const TDStringEncoding &encoding)
{
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING,
                                       qint64(encoding.stringEncodingId()));
}

void TDPreferenceController::changeAutoDetectCharEncodingFromFile()
{
    static_cast<void>(autoDetectCharEncodingFromFile->isChecked());
}

} // namespace tidemark
