#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace zentri::service {

/// Notifies all threads that the service is stopping. Thread-safe; it cannot be reset.
class StopSignal {
public:
    void stop() {
        {
            const std::lock_guard lock(m_mutex);
            m_stopped = true;
        }
        m_changed.notify_all();
    }

    bool stopped() const {
        const std::lock_guard lock(m_mutex);
        return m_stopped;
    }

    /// Sleeps for `time`, or until the service stops; returns whether it is stopping.
    bool waitFor(std::chrono::milliseconds time) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, time, [this] { return m_stopped; });
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopped = false;
};

}  // namespace zentri::service
