#pragma once

#include <QObject>
#include <QPersistentModelIndex>

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
    void _endNewKind();
    void _remove(int row);
    void _move(int distance);
    void _askToRestore();
    void _noteCurrentRow();

    Ui::Preferences &_ui;
    KindsModel &_model;
    QPersistentModelIndex _newKind; ///< the filter of a row that is being typed for the first time
};

} // namespace tidemark
