#include "app/HelpWindow.h"

#include "foundation/LocalizedText.h"

#include <QAction>
#include <QFile>

static void initializeHelpResources()
{
    Q_INIT_RESOURCE(help);
}

namespace tidemark {

HelpWindow::HelpWindow(QWidget *parent) : QTextBrowser(parent)
{
    initializeHelpResources();
    setObjectName(QStringLiteral("helpWindow"));
    setWindowTitle(localizedString("Velkor Tidemark Help"));
    setOpenExternalLinks(true);
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 34);
    QFile page(QStringLiteral(":/help/help.html"));
    if (page.open(QIODevice::ReadOnly))
        setHtml(QString::fromUtf8(page.readAll()));
    auto *closeAction = new QAction(this);
    closeAction->setShortcuts({QKeySequence(Qt::Key_Escape), QKeySequence(QKeySequence::Close)});
    connect(closeAction, &QAction::triggered, this, &QWidget::close);
    addAction(closeAction);
}

void HelpWindow::showTopic(const QString &anchor)
{
    show();
    raise();
    activateWindow();
    scrollToAnchor(anchor);
}

} // namespace tidemark
