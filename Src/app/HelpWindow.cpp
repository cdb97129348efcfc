#include "app/HelpWindow.h"

#include "foundation/LocalizedText.h"

#include <QAction>
#include <QFile>

static void initializeHelpResources()
{
    Q_INIT_RESOURCE(help);
    Q_INIT_RESOURCE(help_pictures);
}

namespace tidemark {

namespace {

QUrl pageFor(const QString &topic)
{
    const QString folder = localizedString("IDS_HelpFolder");
    const QString page = QStringLiteral(":/help/%1/%2.html");
    const QString localized = page.arg(folder, topic);
    return QUrl(QStringLiteral("qrc") +
                (QFile::exists(localized) ? localized : page.arg(QStringLiteral("en"), topic)));
}

} // namespace

HelpWindow::HelpWindow(QWidget *parent) : QTextBrowser(parent)
{
    initializeHelpResources();
    setObjectName(QStringLiteral("helpWindow"));
    setAccessibleName(localizedString("Velkor Tidemark Help"));
    setWindowTitle(localizedString("Velkor Tidemark Help"));
    // Alone, it keeps no application running.
    setAttribute(Qt::WA_QuitOnClose, false);
    setOpenExternalLinks(true);
    document()->setDocumentMargin(fontMetrics().height());
    resize(fontMetrics().averageCharWidth() * 110, fontMetrics().height() * 38);
    auto *closeAction = new QAction(this);
    closeAction->setShortcuts({QKeySequence(Qt::Key_Escape), QKeySequence(QKeySequence::Close)});
    connect(closeAction, &QAction::triggered, this, &QWidget::close);
    auto *backAction = new QAction(this);
    backAction->setShortcuts({QKeySequence(Qt::ALT | Qt::Key_Left), QKeySequence(QKeySequence::Back)});
    connect(backAction, &QAction::triggered, this, &QTextBrowser::backward);
    addActions({closeAction, backAction});
}

void HelpWindow::showTopic(const QString &topic)
{
    setSource(pageFor(topic));
    show();
    raise();
    activateWindow();
}

} // namespace tidemark
