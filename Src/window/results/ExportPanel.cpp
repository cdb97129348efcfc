#include "window/results/ExportPanel.h"

#include "foundation/LocalizedText.h"
#include "session/ResultsExport.h"
#include "window/ErrorSheet.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QProgressDialog>
#include <QSaveFile>

namespace tidemark {

namespace {

constexpr int FIRST_PROGRESS_MS = 300;

struct ExportFormat
{
    const char *description;
    const char *ending;
    ResultsFormat format;
};

constexpr ExportFormat FORMATS[] = {{"Text (*.txt)", ".txt", ResultsFormat::Text},
                                    {"CSV (*.csv)", ".csv", ResultsFormat::Csv},
                                    {"JSON Lines (*.jsonl)", ".jsonl", ResultsFormat::JsonLines},
                                    {"Markdown (*.md)", ".md", ResultsFormat::Markdown}};

ResultsFormat formatOf(const QString &path)
{
    for (const ExportFormat &format : FORMATS) {
        if (path.endsWith(QLatin1String(format.ending), Qt::CaseInsensitive))
            return format.format;
    }
    return ResultsFormat::Text;
}

qsizetype filesAmong(const FindResultItems &nodes)
{
    return std::count_if(nodes.begin(), nodes.end(), [](const auto &node) { return !node->isMatchLine(); });
}

} // namespace

ExportPanel::ExportPanel(QWidget *window, Nodes nodes, Replacement replacement, QObject *parent)
    : QObject(parent), _window(window), _nodes(std::move(nodes)), _replacement(std::move(replacement))
{}

void ExportPanel::open()
{
    auto *dialog = new QFileDialog(
        _window, localizedString(_isFiltered ? "Export the Results That Show" : "Export Results"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    QStringList filters;
    for (const ExportFormat &format : FORMATS)
        filters << localizedString(format.description);
    dialog->setNameFilters(filters);
    const auto takeEnding = [dialog, filters](const QString &filter) {
        const qsizetype chosen = std::max(qsizetype(0), filters.indexOf(filter));
        dialog->setDefaultSuffix(QString::fromLatin1(FORMATS[chosen].ending).sliced(1));
    };
    takeEnding(filters.first());
    // A name to begin with; the ending follows the format.
    dialog->selectFile(localizedString("Search results"));
    connect(dialog, &QFileDialog::filterSelected, dialog, takeEnding);
    connect(dialog, &QFileDialog::fileSelected, this, &ExportPanel::exportTo, Qt::QueuedConnection);
    dialog->open();
}

bool ExportPanel::exportTo(const QString &path)
{
    const FindResultItems nodes = _nodes();
    const auto replacement = _replacement();
    QSaveFile file(path);
    QProgressDialog progress(localizedString("Writing results…"), localizedString("Cancel"), 0,
                             int(filesAmong(nodes)), _window);
    // Nothing can change what is written meanwhile.
    progress.setWindowModality(Qt::ApplicationModal);
    progress.setMinimumDuration(FIRST_PROGRESS_MS);
    const bool isWritten =
        file.open(QIODevice::WriteOnly) &&
        ResultsExport(formatOf(path), replacement.get(), file).write(nodes, [&progress](qsizetype files) {
            progress.setValue(int(files));
            return progress.wasCanceled();
        });
    if (progress.wasCanceled())
        return false;
    progress.reset();
    if (isWritten && file.commit())
        return true;
    makePlainSheet(_window, formatted(localizedString("The results could not be written to ‘%@’."), {path}),
                   file.errorString())
        ->open();
    return false;
}

} // namespace tidemark
