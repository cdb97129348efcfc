#include "app/KindsEditor.h"

#include "app/KindFilter.h"
#include "app/KindsModel.h"
#include "foundation/LocalizedText.h"
#include "ui_Preferences.h"

#include <QCompleter>
#include <QLineEdit>
#include <QMessageBox>
#include <QShortcut>
#include <QStyledItemDelegate>

namespace tidemark {

namespace {

const QString NEW_PATTERN = QStringLiteral("*.");

/// Offers the known types while a filter is typed.
class FilterDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override
    {
        QWidget *editor = QStyledItemDelegate::createEditor(parent, option, index);
        editor->setAccessibleName(localizedString("Filter"));
        if (auto *field = qobject_cast<QLineEdit *>(editor)) {
            auto *completer = new QCompleter(knownTypeFilters(), field);
            completer->setFilterMode(Qt::MatchContains);
            field->setCompleter(completer);
        }
        return editor;
    }
};

void addKey(QWidget *widget, const QKeySequence &key, QAbstractButton *button)
{
    auto *shortcut = new QShortcut(key, widget);
    shortcut->setContext(Qt::WidgetShortcut);
    QObject::connect(shortcut, &QShortcut::activated, button, &QAbstractButton::click);
}

} // namespace

KindsEditor::KindsEditor(Ui::Preferences &ui, KindsModel &model, QObject *parent)
    : QObject(parent), _ui(ui), _model(model)
{
    _setUpTable();
    _connectButtons();
    connect(&_model, &QAbstractItemModel::modelReset, this, [this] { _selectRow(0); });
    _selectRow(0);
    _noteCurrentRow();
}

void KindsEditor::_setUpTable()
{
    QTableView *table = _ui.kindsTableView;
    table->setModel(&_model);
    auto *filters = new FilterDelegate(table);
    table->setItemDelegateForColumn(KindsModel::FilterColumn, filters);
    // The row itself goes only once the view is done with its editor.
    connect(
        filters, &QAbstractItemDelegate::closeEditor, this,
        [this] {
            // By now another one can be typed.
            if (_ui.kindsTableView->indexWidget(_newKind) == nullptr)
                _endNewKind();
        },
        Qt::QueuedConnection);
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() * 3 / 2);
    table->horizontalHeader()->setHighlightSections(false);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    connect(table->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &KindsEditor::_noteCurrentRow);
    connect(&_model, &KindsModel::edited, this, &KindsEditor::_noteCurrentRow);
}

void KindsEditor::_connectButtons()
{
    connect(_ui.addKindButton, &QAbstractButton::clicked, this, &KindsEditor::_add);
    connect(_ui.duplicateKindButton, &QAbstractButton::clicked, this, &KindsEditor::_duplicate);
    connect(_ui.removeKindButton, &QAbstractButton::clicked, this, [this] { _remove(_currentRow()); });
    connect(_ui.moveKindUpButton, &QAbstractButton::clicked, this, [this] { _move(-1); });
    connect(_ui.moveKindDownButton, &QAbstractButton::clicked, this, [this] { _move(1); });
    connect(_ui.restoreKindsButton, &QAbstractButton::clicked, this, &KindsEditor::_askToRestore);
    QTableView *table = _ui.kindsTableView;
    addKey(table, Qt::Key_Insert, _ui.addKindButton);
    addKey(table, Qt::CTRL | Qt::Key_D, _ui.duplicateKindButton);
    addKey(table, Qt::Key_Delete, _ui.removeKindButton);
    addKey(table, Qt::ALT | Qt::Key_Up, _ui.moveKindUpButton);
    addKey(table, Qt::ALT | Qt::Key_Down, _ui.moveKindDownButton);
}

void KindsEditor::focusList()
{
    _ui.kindsTableView->setFocus(Qt::OtherFocusReason);
}

int KindsEditor::_currentRow() const
{
    return _ui.kindsTableView->currentIndex().row();
}

void KindsEditor::_selectRow(int row, int column)
{
    _ui.kindsTableView->setCurrentIndex(_model.index(row, column));
}

void KindsEditor::_add()
{
    _endNewKind();
    const int row = _currentRow() + 1;
    _model.insertKind(row, {QString(), NEW_PATTERN, false});
    focusList();
    _selectRow(row, KindsModel::FilterColumn);
    _newKind = _model.index(row, KindsModel::FilterColumn);
    _ui.kindsTableView->edit(_newKind);
    // The rest of the pattern is typed behind its beginning.
    if (auto *field = qobject_cast<QLineEdit *>(_ui.kindsTableView->indexWidget(_newKind)))
        field->end(false);
}

/// Takes a new kind back that was given no pattern; one without a title is called by its pattern.
void KindsEditor::_endNewKind()
{
    if (!_newKind.isValid())
        return;
    const int row = _newKind.row();
    _newKind = QPersistentModelIndex();
    const Kind kind = _model.kinds()[row];
    if (kind.uti.trimmed().isEmpty() || kind.uti == NEW_PATTERN)
        _remove(row);
    else if (kind.title.isEmpty())
        _model.setData(_model.index(row, KindsModel::TitleColumn), kind.uti, Qt::EditRole);
}

void KindsEditor::_duplicate()
{
    const int row = _currentRow();
    if (row < 0)
        return;
    _model.insertKind(row + 1, _model.kinds()[row]);
    _selectRow(row + 1);
}

void KindsEditor::_remove(int row)
{
    _model.removeKind(row);
    _selectRow(qMin(row, _model.rowCount() - 1));
}

void KindsEditor::_move(int distance)
{
    const int row = _currentRow();
    const int column = _ui.kindsTableView->currentIndex().column();
    if (_model.moveKind(row, row + distance))
        _selectRow(row + distance, column);
}

void KindsEditor::_askToRestore()
{
    auto *question =
        new QMessageBox(QMessageBox::Question, {}, {}, QMessageBox::NoButton, _ui.kindsTableView->window());
    question->setObjectName(QStringLiteral("restoreKindsQuestion"));
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setText(localizedString("Do you want to restore the original list of kinds?"));
    question->setInformativeText(localizedString("Kinds that you added or changed will be lost."));
    QPushButton *restore = question->addButton(localizedString("Restore"), QMessageBox::AcceptRole);
    question->setDefaultButton(question->addButton(localizedString("Cancel"), QMessageBox::RejectRole));
    connect(question, &QMessageBox::buttonClicked, this, [this, restore](QAbstractButton *clicked) {
        if (clicked == restore)
            _model.replaceAll(Kind::defaultKinds());
    });
    question->open();
}

void KindsEditor::_noteCurrentRow()
{
    const int row = _currentRow();
    const bool hasRow = row >= 0;
    _ui.duplicateKindButton->setEnabled(hasRow);
    _ui.removeKindButton->setEnabled(hasRow);
    _ui.moveKindUpButton->setEnabled(row > 0);
    _ui.moveKindDownButton->setEnabled(hasRow && row + 1 < _model.rowCount());
    _ui.kindRemarkLabel->setText(hasRow ? kindFilterRemark(_model.kinds()[row].uti) : QString());
}

} // namespace tidemark
