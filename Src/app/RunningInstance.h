#pragma once

#include "app/CommandLine.h"

#include <QObject>
#include <QString>

#include <memory>

class QLocalServer;

namespace tidemark {

/// One running program for each person, display and settings file: a second one hands over what it was
/// started with, through a local socket that only its user may open, and ends. Main thread only.
class RunningInstance : public QObject
{
    Q_OBJECT

public:
    /// The socket's name for this person, display and settings file.
    static QString nameFor(const QString &settingsFile);

    /// True when a running instance has taken the request. Waits a second at most.
    static bool takes(const QString &name, const LaunchRequest &request);

    /// From now on this process is the running one, unless the system has no socket for it: then every start
    /// is a program of its own.
    explicit RunningInstance(const QString &name, QObject *parent = nullptr);
    ~RunningInstance() override;

Q_SIGNALS:
    void requested(const tidemark::LaunchRequest &request);

private:
    void _answer();

    std::unique_ptr<QLocalServer> _server;
};

} // namespace tidemark
