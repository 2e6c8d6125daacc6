#pragma once

#include <QStringList>

class QObject;

/// Knows all QObjects that are created while it exists, so that a test can tell which timers run. It shows
/// that nothing limits the time of a call without waiting for the time to be up. At most one at a time.
class TimerWatch {
public:
    TimerWatch();
    ~TimerWatch();
    TimerWatch(const TimerWatch&) = delete;
    TimerWatch& operator=(const TimerWatch&) = delete;

    /// The timers that run on a thread that delivers events: class and interval of each. Blocks until that
    /// thread has answered.
    static QStringList runningOn(QObject* objectOnThread);
};
