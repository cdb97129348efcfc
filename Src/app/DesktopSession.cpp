#include "app/DesktopSession.h"

#include "app/TDApplicationController.h"
#include "foundation/UserDefaults.h"
#include "window/WindowedDocument.h"

#include <QGuiApplication>
#include <QSessionManager>

namespace tidemark {

namespace {

/// In the settings: the session that ended last.
const QString SESSION = QStringLiteral("session");
const QString NAME = QStringLiteral("name");
const QString WINDOWS = QStringLiteral("windows");

} // namespace

DesktopSession::DesktopSession(TDApplicationController &controller, QObject *parent)
    : QObject(parent), _controller(controller)
{
    connect(qApp, &QGuiApplication::commitDataRequest, this, &DesktopSession::_commitData,
            Qt::DirectConnection);
    connect(
        qApp, &QGuiApplication::saveStateRequest, this,
        [this](QSessionManager &manager) { save(nameOf(manager.sessionId(), manager.sessionKey())); },
        Qt::DirectConnection);
}

/// A run of replacements isn't cut off without asking, where that is allowed.
void DesktopSession::_commitData(QSessionManager &manager)
{
    if (_controller.countBusyWindows() > 0 && manager.allowsInteraction()) {
        manager.cancel();
        manager.release();
    }
    (void)_controller.applicationShouldTerminate();
    (void)UserDefaults::standard().synchronize();
}

void DesktopSession::save(const QString &session) const
{
    QVariantList windows;
    for (const WindowedDocument *document : _controller.documents())
        windows << document->windowState();
    UserDefaults::standard().setObject(SESSION, QVariantMap{{NAME, session}, {WINDOWS, windows}});
    (void)UserDefaults::standard().synchronize();
}

bool DesktopSession::restore(const QString &session)
{
    const QVariantMap stored = UserDefaults::standard().objectForKey(SESSION).toMap();
    const QVariantList windows = stored.value(WINDOWS).toList();
    if (stored.value(NAME).toString() != session || windows.isEmpty())
        return false;
    for (const QVariant &window : windows)
        _controller.openUntitledDocument(TD_DOCUMENT_TYPE)->takeWindowState(window.toMap());
    return true;
}

} // namespace tidemark
