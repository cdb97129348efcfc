#pragma once

#include "app/KindsModel.h"
#include "reading/TDStringEncoding.h"

#include <QDialog>

#include <memory>

class QCheckBox;
class QTabWidget;

namespace Ui {
class Preferences;
}

namespace tidemark {

class KindsEditor;
class TDApplicationController;
class UserDefaults;

/// The preferences window. Its controls show the settings store and write to it at once; the kinds are the
/// application's. Main thread only.
class TDPreferenceController : public QObject
{
    Q_OBJECT

public:
    /// The application must outlive the controller.
    explicit TDPreferenceController(TDApplicationController &application);
    ~TDPreferenceController() override;

    QWidget *window() { return &_window; }
    Ui::Preferences &ui() { return *_ui; }
    /// In the middle of the screen when it wasn't shown yet.
    void showWindow();
    void showFileTypesTab();

    static const std::vector<TDStringEncoding> &availableEncodings();
    /// Null when the stored number names none.
    static const TDStringEncoding *defaultEncoding();
    static void setDefaultEncoding(const TDStringEncoding &encoding);
    /// The setting itself follows the checkbox by its binding.
    void changeAutoDetectCharEncodingFromFile();

private:
    void _setUpEncodings();
    void _setUpHistoryMaximum();
    void _setUpKinds();
    void _setUpEditors();
    void _showDefaultEncoding();
    void _showHistoryMaximum();
    void _showEditor();
    void _settingChanged(const QString &key);

    TDApplicationController &_application;
    UserDefaults &_settings;
    QDialog _window;
    std::unique_ptr<Ui::Preferences> _ui;
    KindsModel _kinds;
    KindsEditor *_kindsEditor;
    QCheckBox *autoDetectCharEncodingFromFile;
    QTabWidget *tabView;
};

} // namespace tidemark
