#include "window/StopReplaceQuestion.h"

#include "foundation/LocalizedText.h"

#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include <algorithm>
#include <utility>

namespace tidemark {

namespace {

const QString QUESTION_NAME = QStringLiteral("stopReplaceQuestion");

struct StandingQuestion
{
    QPointer<QMessageBox> box;
    QPointer<QObject> context;
    QWidget *window = nullptr;
    std::function<void()> goOn;
};

QList<StandingQuestion> &standingQuestions()
{
    static QList<StandingQuestion> questions;
    questions.removeIf([](const StandingQuestion &question) { return question.box == nullptr; });
    return questions;
}

QMessageBox *standingFor(const QWidget *window)
{
    const QList<StandingQuestion> &questions = standingQuestions();
    const auto found = std::find_if(questions.begin(), questions.end(), [window](const auto &question) {
        return question.window == nullptr || question.window == window;
    });
    return found != questions.end() ? found->box.data() : nullptr;
}

/// Unanswered.
void takeAway(const QList<StandingQuestion> &questions)
{
    for (const StandingQuestion &question : questions) {
        question.box->hide();
        question.box->deleteLater();
    }
}

QMessageBox *makeQuestion(QWidget *window, const WaitingWish &wish, QObject *context)
{
    auto *question = new QMessageBox(window);
    question->setObjectName(QUESTION_NAME);
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setIcon(QMessageBox::Warning);
    question->setText(localizedString("Do you want to stop the replace that is in progress?"));
    question->setInformativeText(
        localizedString("Stopping a replace before it finishes will leave files in an unknown state."));
    QPushButton *continueButton = question->addButton(wish.continueTitle, QMessageBox::RejectRole);
    QPushButton *stopButton = question->addButton(wish.stopTitle, QMessageBox::DestructiveRole);
    question->setDefaultButton(continueButton);
    question->setEscapeButton(continueButton);
    QObject::connect(stopButton, &QPushButton::clicked, context, wish.stop);
    // It is answered from here on, although it is deleted only later.
    QObject::connect(question, &QDialog::finished, question, [question] {
        standingQuestions().removeIf([question](const auto &standing) { return standing.box == question; });
    });
    return question;
}

} // namespace

void askToStopReplace(QWidget *window, const WaitingWish &wish, QObject *context)
{
    if (QMessageBox *standing = standingFor(window)) {
        standing->raise();
        standing->activateWindow();
        return;
    }
    if (window == nullptr)
        takeAway(std::exchange(standingQuestions(), {}));
    QMessageBox *question = makeQuestion(window, wish, context);
    if (window == nullptr)
        question->setWindowModality(Qt::ApplicationModal);
    standingQuestions() << StandingQuestion{question, context, window, wish.goOn};
    question->open();
}

void replaceHasEnded()
{
    const QList<StandingQuestion> questions = std::exchange(standingQuestions(), {});
    for (const StandingQuestion &question : questions) {
        // Whoever tells of the end is still busy with it.
        if (question.context)
            QMetaObject::invokeMethod(question.context, question.goOn, Qt::QueuedConnection);
    }
    takeAway(questions);
}

} // namespace tidemark
