#include "app/HelpWindow.h"

#include "app/HelpSearch.h"
#include "foundation/LocalizedText.h"

#include <QAction>
#include <QDir>
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

/// A selection that looks the same while somebody types what to find.
QPalette withSelectionAlwaysActive(QPalette palette)
{
    for (const QPalette::ColorRole role : {QPalette::Highlight, QPalette::HighlightedText})
        palette.setBrush(QPalette::Inactive, role, palette.brush(QPalette::Active, role));
    return palette;
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
    setPalette(withSelectionAlwaysActive(palette()));
    const QDir pages(u':' + PAGE.arg(QStringLiteral("en"), QString()));
    _search = new HelpSearch(*this, pages.entryList({QStringLiteral("*.html")}), this);
    _search->hide();
    _addActions();
}

void HelpWindow::_addActions()
{
    const auto add = [this](const QList<QKeySequence> &keys, const auto &perform) {
        auto *action = new QAction(this);
        action->setShortcuts(keys);
        connect(action, &QAction::triggered, this, perform);
        addAction(action);
    };
    add({QKeySequence(Qt::Key_Escape)},
        [this] { _search->isVisible() ? _showSearch(false) : (void)close(); });
    add({QKeySequence(QKeySequence::Close)}, [this] { close(); });
    add({QKeySequence(Qt::ALT | Qt::Key_Left), QKeySequence(QKeySequence::Back)}, [this] { backward(); });
    add({QKeySequence(QKeySequence::Find)}, [this] { _showSearch(true); });
    add(QKeySequence::keyBindings(QKeySequence::FindNext), [this] { (void)_search->findNext(); });
    add(QKeySequence::keyBindings(QKeySequence::FindPrevious), [this] { (void)_search->findPrevious(); });
}

/// Above the page.
void HelpWindow::_showSearch(bool isShown)
{
    setViewportMargins(0, isShown ? _search->sizeHint().height() : 0, 0, 0);
    if (isShown) {
        _search->open();
    } else {
        _search->hide();
        setFocus();
    }
}

void HelpWindow::resizeEvent(QResizeEvent *event)
{
    QTextBrowser::resizeEvent(event);
    const QRect page = viewport()->geometry();
    _search->setGeometry(page.left(), contentsRect().top(), page.width(), _search->sizeHint().height());
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
