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

const QString PAGE = QStringLiteral("/help/%1/%2");

/// The page itself, or the English one of that name where the language has none.
QUrl existingPage(QUrl page)
{
    if (page.scheme() == QLatin1String("qrc") && !QFile::exists(u':' + page.path()))
        page.setPath(PAGE.arg(QStringLiteral("en"), page.fileName()));
    return page;
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
    setSource(QUrl(QStringLiteral("qrc:") +
                   PAGE.arg(localizedString("IDS_HelpFolder"), topic + QStringLiteral(".html"))));
    show();
    raise();
    activateWindow();
}

void HelpWindow::doSetSource(const QUrl &name, QTextDocument::ResourceType type)
{
    QTextBrowser::doSetSource(existingPage(source().resolved(name)), type);
}

} // namespace tidemark
