#pragma once

#include <QDialog>

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace tidemark {

/// The backups that this program left beside files, by run: those that are ticked are deleted, and only where
/// they are the very files that were made. It deletes itself when it is closed. Main thread only.
class BackupsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit BackupsDialog(QWidget *parent);

private:
    void _list();
    void _noteTicks();
    void _deleteTicked();

    QTreeWidget *_runs;
    QPushButton *_delete;
    QLabel *_outcome;
};

} // namespace tidemark
