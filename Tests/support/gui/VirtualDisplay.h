#pragma once

#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include <memory>

namespace tidemark::test {

/// An X server without a screen and a window manager on it, both ended with the object.
class VirtualDisplay
{
public:
    static bool isInstalled()
    {
        for (const QString &program :
             {QStringLiteral("Xvfb"), QStringLiteral("openbox"), QStringLiteral("xdotool")}) {
            if (QStandardPaths::findExecutable(program).isEmpty())
                return false;
        }
        return true;
    }

    VirtualDisplay()
    {
        _server.start(QStringLiteral("Xvfb"),
                      {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                       QStringLiteral("0"), QStringLiteral("1280x1024x24"), QStringLiteral("-nolisten"),
                       QStringLiteral("tcp")});
        if (!QTest::qWaitFor([this] { return _server.canReadLine(); }, 10000))
            return;
        _environment.insert(QStringLiteral("DISPLAY"),
                            u':' + QString::fromLatin1(_server.readLine().trimmed()));
        _environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        _environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        _manager.setProcessEnvironment(_environment);
        _manager.setStandardErrorFile(QProcess::nullDevice());
        // Windows shown before it manages the screen might never get the focus.
        _manager.start(
            QStringLiteral("openbox"),
            {QStringLiteral("--sm-disable"), QStringLiteral("--startup"), QStringLiteral("echo ready")});
        _isStarted = QTest::qWaitFor([this] { return _manager.canReadLine(); }, 10000);
    }
    ~VirtualDisplay()
    {
        for (QProcess *process : {&_manager, &_server}) {
            process->terminate();
            process->waitForFinished(5000);
        }
    }

    bool isStarted() const { return _isStarted; }
    /// For programs that are to be shown there.
    const QProcessEnvironment &environment() const { return _environment; }

private:
    QProcess _server;
    QProcess _manager;
    QProcessEnvironment _environment = QProcessEnvironment::systemEnvironment();
    bool _isStarted = false;
};

} // namespace tidemark::test
