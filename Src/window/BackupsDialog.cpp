#include "window/BackupsDialog.h"

#include "foundation/LocalizedText.h"
#include "replace/UndoJournal.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tidemark {

namespace {

constexpr QSize SIZE_OF_BACKUPS = {720, 420};

/// One row a backup, below that of its run.
class BackupRow : public QTreeWidgetItem
{
public:
    explicit BackupRow(const KeptBackup &kept) : backup(kept)
    {
        setText(0, kept.path.displayText());
        setText(1, QLocale().formattedDataSize(kept.content.size));
        setCheckState(0, Qt::Unchecked);
    }

    const KeptBackup backup;
};

QTreeWidgetItem *rowOf(const BackupRun &run)
{
    auto *row = new QTreeWidgetItem;
    row->setText(0, QLocale().toString(run.date.toLocalTime(), QLocale::ShortFormat) + QStringLiteral("   ") +
                        run.findText.simplified() + QStringLiteral(" → ") + run.replaceText.simplified());
    qint64 size = 0;
    for (const KeptBackup &backup : run.backups) {
        row->addChild(new BackupRow(backup));
        size += backup.content.size;
    }
    row->setText(1, QLocale().formattedDataSize(size));
    row->setFlags(row->flags() | Qt::ItemIsAutoTristate | Qt::ItemIsUserCheckable);
    row->setCheckState(0, Qt::Unchecked);
    return row;
}

} // namespace

BackupsDialog::BackupsDialog(QWidget *parent)
    : QDialog(parent), _runs(new QTreeWidget(this)),
      _delete(new QPushButton(localizedString("&Delete Ticked"), this)), _outcome(new QLabel(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(localizedString("Delete Backups"));
    resize(SIZE_OF_BACKUPS);
    _runs->setObjectName(QStringLiteral("runs"));
    _runs->setColumnCount(2);
    _runs->setHeaderLabels({localizedString("Backup"), localizedString("Size")});
    _runs->setUniformRowHeights(true);
    _runs->setAccessibleName(windowTitle());
    _outcome->setTextFormat(Qt::PlainText);
    _outcome->setWordWrap(true);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->addButton(_delete, QDialogButtonBox::ActionRole);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(_runs);
    layout->addWidget(_outcome);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(_delete, &QPushButton::clicked, this, &BackupsDialog::_deleteTicked);
    connect(_runs, &QTreeWidget::itemChanged, this, &BackupsDialog::_noteTicks);
    _outcome->setText(
        localizedString("A backup that was changed, or isn't the one that was made, stays where it is."));
    _list();
}

void BackupsDialog::_list()
{
    _runs->clear();
    if (const std::optional<UndoJournal> journal = UndoJournal::current()) {
        for (const BackupRun &run : journal->backupRuns())
            _runs->addTopLevelItem(rowOf(run));
    }
    _runs->setColumnWidth(0, SIZE_OF_BACKUPS.width() * 3 / 4);
    _noteTicks();
}

void BackupsDialog::_noteTicks()
{
    bool isAnyTicked = false;
    for (int run = 0; run < _runs->topLevelItemCount(); ++run)
        isAnyTicked = isAnyTicked || _runs->topLevelItem(run)->checkState(0) != Qt::Unchecked;
    _delete->setEnabled(isAnyTicked);
}

void BackupsDialog::_deleteTicked()
{
    QList<KeptBackup> ticked;
    for (int run = 0; run < _runs->topLevelItemCount(); ++run) {
        const QTreeWidgetItem *row = _runs->topLevelItem(run);
        for (int child = 0; child < row->childCount(); ++child) {
            if (row->child(child)->checkState(0) == Qt::Checked)
                ticked << static_cast<const BackupRow *>(row->child(child))->backup;
        }
    }
    const QList<UndoJournal::BackupFailure> failures = UndoJournal::deleteBackups(ticked);
    const QLocale locale;
    QString outcome =
        formatted(localizedString("%@ backups deleted."), {locale.toString(ticked.size() - failures.size())});
    if (!failures.isEmpty())
        outcome += QLatin1Char(' ') +
                   formatted(localizedString("%@ were not, as they were changed or are not permitted "
                                             "to go: %@"),
                             {locale.toString(failures.size()), failures.first().backup.path.displayText()});
    _outcome->setText(outcome);
    _list();
}

} // namespace tidemark
