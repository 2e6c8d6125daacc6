#pragma once

#include <functional>
#include <thread>

namespace cad {

/// Turns SIGINT and SIGTERM into a call on a thread of its own; a second signal kills as usual.
class QuitSignals {
public:
    explicit QuitSignals(std::function<void()> onSignal);
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;
    ~QuitSignals();

private:
    std::function<void()> m_onSignal;
    std::thread m_thread;
};

}  // namespace cad
