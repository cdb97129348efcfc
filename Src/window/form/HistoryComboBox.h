#pragma once

#include <QComboBox>

namespace tidemark {

class UserDefaults;

/// A text field with the list of the texts used before. The text stays exactly as typed or pasted, line
/// breaks included; choosing from the list is the only thing that fills it in.
class HistoryComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit HistoryComboBox(QWidget *parent = nullptr);

    /// Takes the list from the settings and follows its changes. The settings must outlive the box.
    void bindHistory(UserDefaults &settings, const QString &key);
    /// Leaves the cursor alone when the text is the same already.
    void setText(const QString &text);

    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void returnPressed();

protected:
    void focusOutEvent(QFocusEvent *event) override;

private:
    /// Some desktops move the cursor with keys that are commands of the window here.
    bool _isLeftToWindow(QEvent &event) const;
    void _setHistory(const QStringList &texts);
};

} // namespace tidemark
