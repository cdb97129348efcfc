#include "window/results/OutcomeNotice.h"

#include "foundation/LocalizedText.h"
#include "replace/UndoStepFiles.h"
#include "session/SearchStatusLine.h"
#include "ui_MyDocument.h"
#include "window/Colors.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>

#include <utility>

namespace tidemark {

namespace {

const QString FAILURES = QStringLiteral("failures");
const QString UNREADABLE = QStringLiteral("unreadable");
const QString TAKE_BACK = QStringLiteral("step");

/// A label that gets the keyboard gives it to none of its links by itself.
void enterFirstLink(QLabel *label, Qt::FocusReason reason)
{
    const Qt::Key key = reason == Qt::TabFocusReason ? Qt::Key_Tab : Qt::Key_Backtab;
    const auto press = [label, key] {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(label, &event);
    };
    QMetaObject::invokeMethod(label, press, Qt::QueuedConnection);
}

} // namespace

OutcomeNotice::OutcomeNotice(Ui::MyDocument &ui, QObject *parent)
    : QObject(parent), _ui(ui), _links(new QLabel(ui.resultsPane))
{
    _links->setObjectName(QStringLiteral("outcomeLinks"));
    _links->setTextFormat(Qt::RichText);
    _links->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    _links->setFocusPolicy(Qt::StrongFocus);
    _links->installEventFilter(this);
    _links->hide();
    _ui.statusRow->insertWidget(_ui.statusRow->indexOf(_ui.leftOutButton) + 1, _links);
    QWidget::setTabOrder(_ui.leftOutButton, _links);
    // Queued: what it leads to changes the label.
    connect(
        _links, &QLabel::linkActivated, this,
        [this](const QString &link) {
            // It is hidden, and forgets the step, as soon as the run begins.
            const QByteArray step = _step;
            if (link == UNREADABLE)
                Q_EMIT unreadableFilesRequested();
            else if (link == FAILURES)
                Q_EMIT failuresRequested();
            else if (!step.isEmpty())
                Q_EMIT takeBackRequested(step);
        },
        Qt::QueuedConnection);
}

void OutcomeNotice::show(quint64 filesFailed, const QByteArray &step)
{
    _filesFailed = filesFailed;
    _step = step;
    _update();
}

void OutcomeNotice::setUnreadableFiles(quint64 count)
{
    if (std::exchange(_unreadableFiles, count) != count)
        _update();
}

void OutcomeNotice::forgetStep()
{
    _step.clear();
    _update();
}

void OutcomeNotice::hide()
{
    show(0, {});
}

void OutcomeNotice::_update()
{
    const QColor color =
        linkColor(_links->palette().color(QPalette::WindowText), _links->palette().color(QPalette::Window));
    QString html;
    QString spoken;
    const auto addLink = [&](const QString &link, const QString &text) {
        html += localizedString(" • ") + QStringLiteral("<a style=\"color:%1\" href=\"%2\">%3</a>")
                                             .arg(color.name(), link, text.toHtmlEscaped());
        spoken += (spoken.isEmpty() ? QString() : QStringLiteral(", ")) + text;
    };
    if (_unreadableFiles > 0)
        addLink(UNREADABLE, unreadableFilesStatus(_unreadableFiles));
    if (_filesFailed > 0)
        addLink(FAILURES, failedFilesStatus(_filesFailed));
    if (!_step.isEmpty())
        addLink(TAKE_BACK, localizedString(_step.startsWith(REDO_PREFIX) ? "Redo" : "Undo"));
    _links->setText(html);
    _links->setAccessibleName(spoken);
    _links->setVisible(!html.isEmpty());
    // They stand right behind the text, which gives way where there is little room.
    if (!html.isEmpty() || !_ui.leftOutButton->isVisibleTo(_ui.resultsPane))
        _ui.resultsStatusLabel->setHuggingText(!html.isEmpty());
}

bool OutcomeNotice::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::PaletteChange && _links->isVisible())
        QMetaObject::invokeMethod(this, &OutcomeNotice::_update, Qt::QueuedConnection);
    if (event->type() == QEvent::FocusIn) {
        const Qt::FocusReason reason = static_cast<const QFocusEvent *>(event)->reason();
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason)
            enterFirstLink(_links, reason);
    }
    return QObject::eventFilter(watched, event);
}

} // namespace tidemark
