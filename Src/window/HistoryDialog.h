#pragma once

#include <QDialog>

class QPushButton;
class QTreeWidget;

namespace tidemark {

/// The steps of the journal, the latest first: to be undone, redone or forgotten one by one. It deletes
/// itself when it is closed. Main thread only.
class HistoryDialog : public QDialog
{
    Q_OBJECT

public:
    explicit HistoryDialog(QWidget *parent);

Q_SIGNALS:
    /// To be undone, or redone.
    void takeBackRequested(const QByteArray &stepId);

private:
    void _list();
    void _noteSelection();
    void _forget();
    QByteArray _selectedStep() const;

    QTreeWidget *_steps;
    QPushButton *_takeBack;
    QPushButton *_forgetButton;
};

} // namespace tidemark
