#include "app/InterruptedRewritesQuestion.h"

#include "foundation/LocalizedText.h"
#include "foundation/TDError.h"
#include "replace/UndoJournal.h"
#include "session/ReplaceTexts.h"
#include "window/ErrorSheet.h"

#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include <algorithm>
#include <optional>
#include <utility>

namespace tidemark {

namespace {

using File = InterruptedRewrites::File;
using State = InterruptedRewrites::State;

constexpr qsizetype MOST_FILES_SHOWN = 10;

QList<File> filesInState(const QList<File> &files, State state)
{
    QList<File> chosen;
    std::copy_if(files.begin(), files.end(), std::back_inserter(chosen),
                 [state](const File &file) { return file.state == state; });
    return chosen;
}

QString pathsShown(const QList<File> &files)
{
    QString paths;
    for (qsizetype index = 0; index < qMin(files.size(), MOST_FILES_SHOWN); ++index)
        paths += files[index].path.displayText() + u'\n';
    if (files.size() > MOST_FILES_SHOWN)
        paths +=
            formatted(localizedString("… and %d more"), {qint64(files.size() - MOST_FILES_SHOWN)}) + u'\n';
    return paths;
}

QString pathsWithBackups(const QList<File> &files)
{
    QString lines;
    for (const File &file : files)
        lines += formatted(localizedString("%@\n    old content: %@\n"),
                           {file.path.displayText(), file.backup.displayText()});
    return lines;
}

QString paragraph(const char *text, const QList<File> &files)
{
    return files.isEmpty() ? QString() : formatted(localizedString(text), {pathsShown(files)}) + u'\n';
}

QString undoText(const UndoStep &step)
{
    return formatted(
               localizedString("Undoing the whole run puts every file that it changed (%@) back as it was "
                               "before."),
               {grouped(quint64(step.files))}) +
           u'\n' + findAndReplaceTexts(step.findText, step.replaceText);
}

QString informativeText(const InterruptedRewrites &rewrites)
{
    const QList<File> &files = rewrites.files();
    const RunProgress progress = rewrites.progress();
    QString text;
    if (progress.total > 0)
        text += formatted(localizedString("%d of %d files were done."), {progress.done, progress.total}) +
                u' ' +
                (files.isEmpty() ? localizedString("All others are as they were, and none is damaged.")
                                 : QString()) +
                u'\n';
    text += paragraph(
        "These files may be written only in part:\n\n%@\nTheir old content is complete in backups. Do "
        "you want to put it back? If you keep the files as they are, the backups are left for you.",
        filesInState(files, State::Damaged));
    if (!filesInState(files, State::Damaged).isEmpty())
        text += localizedString("What stands in them now is kept in new backups beside them.") + u'\n';
    text += paragraph(
        "These files may be written only in part, too, but their backups are gone or hold something "
        "else. They are left as they are:\n\n%@",
        filesInState(files, State::UnusableBackup));
    text +=
        paragraph("These files were being written and are not where they were. Nothing is changed at these "
                  "places:\n\n%@",
                  filesInState(files, State::Moved));
    return text.trimmed();
}

void tellFailures(QWidget *window, const QList<InterruptedRewrites::Failure> &failures)
{
    QString lines;
    for (const InterruptedRewrites::Failure &failure : failures) {
        lines += formatted(localizedString("%@: %@\n    old content: %@\n"),
                           {failure.file.path.displayText(),
                            TDError::posixError(failure.errorNumber).localizedFailureReason(),
                            failure.file.backup.displayText()});
    }
    QMessageBox *sheet = makePlainSheet(
        window, localizedString("The old content of some files could not be put back."),
        localizedString("Their backups are still there, and Tidemark will ask again at its next start."));
    sheet->setDetailedText(lines);
    sheet->setStandardButtons(QMessageBox::Ok);
    sheet->open();
}

/// `afterwards` is called on the main thread, if the window is still there.
void putBack(QWidget *window, const std::shared_ptr<InterruptedRewrites> &rewrites, WorkerThreads &worker,
             const std::function<void()> &afterwards = {})
{
    worker.start([window = QPointer(window), rewrites, afterwards] {
        const auto failures = rewrites->putBack();
        if (window.isNull())
            return;
        QMetaObject::invokeMethod(
            window.data(),
            [window, failures, afterwards] {
                if (!failures.isEmpty())
                    tellFailures(window, failures);
                if (afterwards)
                    afterwards();
            },
            Qt::QueuedConnection);
    });
}

/// Nothing when the journal doesn't have it.
std::optional<UndoStep> stepOf(const InterruptedRewrites &rewrites)
{
    const std::optional<UndoJournal> journal = UndoJournal::current();
    return journal ? journal->lastStepOf(rewrites.ownersOfRunsCutShort()) : std::nullopt;
}

void addQuestion(QMessageBox &sheet, QWidget *window, const std::shared_ptr<InterruptedRewrites> &rewrites,
                 WorkerThreads &worker)
{
    QPushButton *back = sheet.addButton(localizedString("Put Old Content Back"), QMessageBox::AcceptRole);
    QPushButton *keep =
        sheet.addButton(localizedString("Keep Files As They Are"), QMessageBox::DestructiveRole);
    QPushButton *later = sheet.addButton(localizedString("Decide Later"), QMessageBox::RejectRole);
    sheet.setDefaultButton(back);
    sheet.setEscapeButton(later);
    QObject::connect(back, &QPushButton::clicked, &sheet,
                     [window, rewrites, &worker] { putBack(window, rewrites, worker); });
    QObject::connect(keep, &QPushButton::clicked, &sheet, [rewrites] { rewrites->keep(); });
}

} // namespace

void askAboutInterruptedRewrites(QWidget *window, const std::shared_ptr<InterruptedRewrites> &rewrites,
                                 WorkerThreads &worker, std::function<void(const QByteArray &)> undo)
{
    const QList<File> &files = rewrites->files();
    if (files.isEmpty() && rewrites->progress().total == 0)
        return;
    const std::optional<UndoStep> step = undo ? stepOf(*rewrites) : std::nullopt;
    QString text = informativeText(*rewrites);
    if (step)
        text += QStringLiteral("\n\n") + undoText(*step);
    QMessageBox *sheet =
        makePlainSheet(window, localizedString("Tidemark ended while it was rewriting files."), text);
    sheet->setObjectName(QStringLiteral("interruptedRewritesQuestion"));
    if (!files.isEmpty())
        sheet->setDetailedText(pathsWithBackups(files));
    if (filesInState(files, State::Damaged).isEmpty()) {
        QPushButton *seen = sheet->addButton(QMessageBox::Ok);
        sheet->setDefaultButton(seen);
        sheet->setEscapeButton(seen);
        // There is nothing to put back: what couldn't be looked at is asked about again.
        QObject::connect(seen, &QPushButton::clicked, sheet, [rewrites] { (void)rewrites->putBack(); });
    } else {
        addQuestion(*sheet, window, rewrites, worker);
    }
    if (step) {
        const QPushButton *undoAll =
            sheet->addButton(localizedString("Undo the Whole Run"), QMessageBox::AcceptRole);
        QObject::connect(undoAll, &QPushButton::clicked, sheet,
                         [window, rewrites, &worker, undo = std::move(undo), id = step->id] {
                             putBack(window, rewrites, worker, [undo, id] { undo(id); });
                         });
    }
    sheet->open();
}

} // namespace tidemark
