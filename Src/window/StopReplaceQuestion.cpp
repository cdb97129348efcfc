#include "window/StopReplaceQuestion.h"

#include "foundation/LocalizedText.h"

#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

namespace tidemark {

namespace {

const QString QUESTION_NAME = QStringLiteral("stopReplaceQuestion");

} // namespace

void askToStopReplace(QWidget *window, const QString &continueTitle, const QString &stopTitle,
                      QObject *context, const std::function<void()> &stop)
{
    static QPointer<QMessageBox> standing;
    if (standing) {
        standing->raise();
        standing->activateWindow();
        return;
    }
    auto *question = new QMessageBox(window);
    standing = question;
    question->setObjectName(QUESTION_NAME);
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setIcon(QMessageBox::Warning);
    question->setText(localizedString("Do you want to stop the replace that is in progress?"));
    question->setInformativeText(
        localizedString("Stopping a replace before it finishes will leave files in an unknown state."));
    QPushButton *continueButton = question->addButton(continueTitle, QMessageBox::RejectRole);
    QPushButton *stopButton = question->addButton(stopTitle, QMessageBox::DestructiveRole);
    question->setDefaultButton(continueButton);
    question->setEscapeButton(continueButton);
    QObject::connect(stopButton, &QPushButton::clicked, context, stop);
    if (window == nullptr)
        question->setWindowModality(Qt::ApplicationModal);
    question->open();
}

} // namespace tidemark
