#include "app/InterruptedRewritesQuestion.h"

#include "foundation/LocalizedText.h"
#include "foundation/TDError.h"
#include "window/ErrorSheet.h"

#include <QMessageBox>
#include <QPushButton>

namespace tidemark {

namespace {

constexpr qsizetype MOST_FILES_SHOWN = 10;

QString pathsShown(const QList<InterruptedRewrites::File> &files)
{
    QString paths;
    for (qsizetype index = 0; index < qMin(files.size(), MOST_FILES_SHOWN); ++index)
        paths += files[index].path.displayText() + u'\n';
    if (files.size() > MOST_FILES_SHOWN)
        paths +=
            formatted(localizedString("… and %d more"), {qint64(files.size() - MOST_FILES_SHOWN)}) + u'\n';
    return paths;
}

QString pathsWithBackups(const QList<InterruptedRewrites::File> &files)
{
    QString lines;
    for (const InterruptedRewrites::File &file : files)
        lines += formatted(localizedString("%@\n    old content: %@\n"),
                           {file.path.displayText(), file.backup.displayText()});
    return lines;
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

} // namespace

void askAboutInterruptedRewrites(QWidget *window, std::unique_ptr<InterruptedRewrites> rewrites)
{
    const QList<InterruptedRewrites::File> files = rewrites->files();
    if (files.isEmpty())
        return;
    QMessageBox *question = makePlainSheet(
        window, localizedString("Tidemark ended while it was rewriting files."),
        formatted(localizedString("These files may be written only in part:\n\n%@\nTheir old content is "
                                  "complete in backups. Do you want to put it back? If you keep the files as "
                                  "they are, the backups are left for you."),
                  {pathsShown(files)}));
    question->setObjectName(QStringLiteral("interruptedRewritesQuestion"));
    question->setDetailedText(pathsWithBackups(files));
    QPushButton *putBack =
        question->addButton(localizedString("Put Old Content Back"), QMessageBox::AcceptRole);
    QPushButton *keep =
        question->addButton(localizedString("Keep Files As They Are"), QMessageBox::DestructiveRole);
    QPushButton *later = question->addButton(localizedString("Decide Later"), QMessageBox::RejectRole);
    question->setDefaultButton(putBack);
    question->setEscapeButton(later);
    const auto shared = std::shared_ptr<InterruptedRewrites>(std::move(rewrites));
    QObject::connect(putBack, &QPushButton::clicked, question, [window, shared] {
        if (const auto failures = shared->putBack(); !failures.isEmpty())
            tellFailures(window, failures);
    });
    QObject::connect(keep, &QPushButton::clicked, question, [shared] { shared->keep(); });
    question->open();
}

} // namespace tidemark
