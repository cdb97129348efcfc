#include "window/Workspace.h"

#include "foundation/LocalizedText.h"

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

std::optional<QString> DesktopWorkspace::open(const FilePath &file)
{
    if (QDesktopServices::openUrl(file.toUrl()))
        return {};
    return formatted(localizedString("The desktop has no program to open “%@” with."), {file.displayText()});
}

std::optional<QString> DesktopWorkspace::openAt(const EditorPlace &place)
{
    if (const std::optional<QString> command = chosenEditorCommand())
        return openInEditor(*command, place);
    return open(place.path);
}

std::optional<QString> DesktopWorkspace::reveal(const FilePath &file)
{
    const FilePath parent = file.deletingLastPathComponent();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return open(parent);
    const QUrl folder = parent.toUrl();
    auto *call = new QDBusPendingCallWatcher(bus.asyncCall(showItemsMessage(file.toUrl())));
    QObject::connect(call, &QDBusPendingCallWatcher::finished, call, [call, folder] {
        if (call->isError())
            QDesktopServices::openUrl(folder);
        call->deleteLater();
    });
    return {};
}

} // namespace tidemark
