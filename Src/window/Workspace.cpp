#include "window/Workspace.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>

namespace tidemark {

namespace {

QDBusMessage showItemsMessage(const QUrl &file)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    message << QStringList(file.toString(QUrl::FullyEncoded)) << QString();
    return message;
}

} // namespace

void DesktopWorkspace::open(const FilePath &file)
{
    QDesktopServices::openUrl(file.toUrl());
}

std::optional<QString> DesktopWorkspace::openAt(const EditorPlace &place)
{
    if (const std::optional<QString> command = chosenEditorCommand())
        return openInEditor(*command, place);
    open(place.path);
    return {};
}

void DesktopWorkspace::reveal(const FilePath &file)
{
    const QUrl folder = file.deletingLastPathComponent().toUrl();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        QDesktopServices::openUrl(folder);
        return;
    }
    auto *call = new QDBusPendingCallWatcher(bus.asyncCall(showItemsMessage(file.toUrl())));
    QObject::connect(call, &QDBusPendingCallWatcher::finished, call, [call, folder] {
        if (call->isError())
            QDesktopServices::openUrl(folder);
        call->deleteLater();
    });
}

} // namespace tidemark
