#pragma once

#include "app/CommandLine.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>

class QLocalServer;
class QLocalSocket;

namespace tidemark {

/// One running program for each person, display and settings file: a second one hands over what it was
/// started with, through a local socket that only its user may open, and ends. Main thread only.
class RunningInstance : public QObject
{
    Q_OBJECT

public:
    /// The socket's path for this display and settings file, in a folder that only this person may enter.
    /// Empty where the system has none; then every start is a program of its own.
    static QString nameFor(const QString &settingsFile);

    /// How long one that doesn't answer is waited for: it may be busy with a large file.
    static constexpr std::chrono::milliseconds PATIENCE{4000};

    /// Hands the request to the running instance. Where there is none, this process is the running one from
    /// now on; where there is one that doesn't answer, this one is a program of its own, and the other one
    /// forgets the request. Several that start at once do this one after the other.
    RunningInstance(const QString &name, const LaunchRequest &request,
                    std::chrono::milliseconds patience = PATIENCE, QObject *parent = nullptr);
    ~RunningInstance() override;

    /// Whether another process has taken the request, so that this one has nothing to do.
    bool hasHandedOver() const { return _hasHandedOver; }

Q_SIGNALS:
    /// What another process was started with. From the event loop only.
    void requested(const tidemark::LaunchRequest &request);

private:
    enum class Answer { Taken, Nobody, Silence };
    static Answer _handOver(const QString &name, const LaunchRequest &request,
                            std::chrono::milliseconds patience);
    void _listen(const QString &name);
    void _answer();
    void _read(QLocalSocket &socket, std::optional<LaunchRequest> &request);

    const std::chrono::milliseconds _patience;
    bool _hasHandedOver = false;
    std::unique_ptr<QLocalServer> _server;
};

} // namespace tidemark
