#include "window/HistoryDialog.h"

#include "foundation/LocalizedText.h"
#include "replace/UndoJournal.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tidemark {

namespace {

constexpr QSize SIZE_OF_HISTORY = {760, 360};
constexpr int LONGEST_TEXT = 60;
constexpr int TEXTS_WIDTH = 280;
enum Column { When, Texts, Files, Matches, Size, State, COLUMN_COUNT };

/// On one line, shortened in the middle.
QString shownText(const QString &text)
{
    const QString line = text.simplified();
    return line.size() <= LONGEST_TEXT
               ? line
               : line.left(LONGEST_TEXT / 2) + QStringLiteral("…") + line.right(LONGEST_TEXT / 2);
}

QTreeWidgetItem *rowOf(const UndoStep &step)
{
    const QLocale locale;
    auto *row = new QTreeWidgetItem;
    row->setText(When, locale.toString(step.date.toLocalTime(), QLocale::ShortFormat));
    row->setText(Texts, shownText(step.findText) + QStringLiteral(" → ") + shownText(step.replaceText));
    row->setText(Files, locale.toString(step.files));
    row->setText(Matches, locale.toString(step.matches));
    row->setText(Size, locale.formattedDataSize(step.size));
    row->setText(State, step.isInUse                      ? localizedString("In use")
                        : step.kind == UndoStepKind::Redo ? localizedString("Undone")
                                                          : localizedString("Done"));
    row->setToolTip(Texts, step.findText + QStringLiteral("\n→\n") + step.replaceText);
    for (const Column column : {Files, Matches, Size})
        row->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    row->setData(When, Qt::UserRole, step.id);
    row->setData(When, Qt::UserRole + 1, step.kind == UndoStepKind::Redo);
    row->setDisabled(step.isInUse);
    return row;
}

} // namespace

HistoryDialog::HistoryDialog(QWidget *parent)
    : QDialog(parent), _steps(new QTreeWidget(this)), _takeBack(new QPushButton(this)),
      _forgetButton(new QPushButton(localizedString("&Forget"), this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(localizedString("History of Replacements"));
    resize(SIZE_OF_HISTORY);
    _steps->setObjectName(QStringLiteral("steps"));
    _steps->setColumnCount(COLUMN_COUNT);
    _steps->setHeaderLabels({localizedString("When"), localizedString("Find → Replace"),
                             localizedString("Files"), localizedString("Matches"), localizedString("Size"),
                             localizedString("State")});
    _steps->setRootIsDecorated(false);
    _steps->setUniformRowHeights(true);
    _steps->setAccessibleName(windowTitle());
    auto *note =
        new QLabel(localizedString(
                       "A file that was changed since isn't touched. What is forgotten can't be taken back."),
                   this);
    note->setWordWrap(true);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->addButton(_takeBack, QDialogButtonBox::ActionRole);
    buttons->addButton(_forgetButton, QDialogButtonBox::ActionRole);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(_steps);
    layout->addWidget(note);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(_steps, &QTreeWidget::itemSelectionChanged, this, &HistoryDialog::_noteSelection);
    connect(_forgetButton, &QPushButton::clicked, this, &HistoryDialog::_forget);
    connect(_takeBack, &QPushButton::clicked, this, [this] {
        Q_EMIT takeBackRequested(_selectedStep());
        close();
    });
    _list();
}

void HistoryDialog::_list()
{
    _steps->clear();
    if (const std::optional<UndoJournal> journal = UndoJournal::current()) {
        for (const UndoStep &step : journal->steps())
            _steps->addTopLevelItem(rowOf(step));
    }
    for (int column = 0; column < COLUMN_COUNT; ++column)
        _steps->resizeColumnToContents(column);
    _steps->setColumnWidth(Texts, TEXTS_WIDTH);
    if (_steps->topLevelItemCount() > 0)
        _steps->setCurrentItem(_steps->topLevelItem(0));
    _noteSelection();
}

void HistoryDialog::_noteSelection()
{
    const QList<QTreeWidgetItem *> selected = _steps->selectedItems();
    const bool isRedo = !selected.isEmpty() && selected.first()->data(When, Qt::UserRole + 1).toBool();
    _takeBack->setText(isRedo ? localizedString("&Redo") : localizedString("&Undo"));
    _takeBack->setEnabled(!selected.isEmpty());
    _forgetButton->setEnabled(!selected.isEmpty());
}

void HistoryDialog::_forget()
{
    if (const std::optional<UndoJournal> journal = UndoJournal::current())
        (void)journal->forget(_selectedStep());
    _list();
}

QByteArray HistoryDialog::_selectedStep() const
{
    const QList<QTreeWidgetItem *> selected = _steps->selectedItems();
    return selected.isEmpty() ? QByteArray() : selected.first()->data(When, Qt::UserRole).toByteArray();
}

} // namespace tidemark
