#pragma once

#include <QElapsedTimer>
#include <QTimer>

namespace tidemark::test {

/// Notes how long the main thread was away from its events at most.
class Heartbeat
{
public:
    Heartbeat()
    {
        QObject::connect(&_timer, &QTimer::timeout, [this] { beat(); });
        _timer.start(2);
        _sinceBeat.start();
    }
    void beat() { _longest = qMax(_longest, _sinceBeat.restart()); }
    qint64 longestStall() const { return _longest; }

private:
    QTimer _timer;
    QElapsedTimer _sinceBeat;
    qint64 _longest = 0;
};

} // namespace tidemark::test
