#pragma once

#include <QObject>
#include <QString>

namespace Ui {
class MyDocument;
}

namespace tidemark {

/// Whether the line shows.
inline const QString TD_USER_DEFAULTS_NAME_LEAVE_OUT_SHOWN = QStringLiteral("leaveOutShown");

/// The line on what a search leaves out, which the button "More" opens: keeps its controls and the settings
/// the same, and tells under the field while the person types which pattern matches nothing.
class LeaveOutForm : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive the object.
    explicit LeaveOutForm(Ui::MyDocument &ui, QObject *parent = nullptr);

Q_SIGNALS:
    void startRequested();

private:
    void _setUpField();
    void _setUpSize();
    void _setUpMore();
    void _follow(const QString &key);
    void _showSize();
    void _storeSize();
    void _showFault();
    void _showOrHide();

    Ui::MyDocument &_ui;
    bool _isShowingSize = false;
};

} // namespace tidemark
