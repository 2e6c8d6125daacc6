#pragma once

#include <functional>
#include <thread>

namespace cad {

/// Calls `onSignal` on a separate thread for SIGINT and SIGTERM (Ctrl-C and Ctrl-Break on Windows). When the
/// signal is repeated, the default action ends the process. One instance at a time.
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
