#pragma once

#include <QObject>

namespace Ui {
class Preferences;
}

namespace tidemark {

class KindsModel;

/// The file types tab: its table, and the buttons that change the list.
class KindsEditor : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the object.
    KindsEditor(Ui::Preferences &ui, KindsModel &model, QObject *parent);

    void focusList();

private:
    void _setUpTable();
    void _connectButtons();
    int _currentRow() const;
    void _selectRow(int row, int column = 0);
    void _add();
    void _duplicate();
    void _remove();
    void _move(int distance);
    void _askToRestore();
    void _noteCurrentRow();

    Ui::Preferences &_ui;
    KindsModel &_model;
};

} // namespace tidemark
