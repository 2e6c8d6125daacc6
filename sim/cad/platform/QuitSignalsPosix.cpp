#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <utility>

#include "sim/cad/platform/QuitSignals.h"

namespace cad {

namespace {

constexpr char kSignalled = 's';
constexpr char kStop = 'q';

int g_pipe[2] = {-1, -1};

void handler(int signal) {
    std::signal(signal, SIG_DFL);
    // A write fails only when the pipe is full; then the reader has a byte to wake up for anyway.
    [[maybe_unused]] const ssize_t written = write(g_pipe[1], &kSignalled, 1);
}

}  // namespace

QuitSignals::QuitSignals(std::function<void()> onSignal) : m_onSignal(std::move(onSignal)) {
    if (pipe2(g_pipe, O_CLOEXEC) != 0) {
        return;
    }
    m_thread = std::thread([this] {
        char byte = 0;
        while (read(g_pipe[0], &byte, 1) == 1 && byte != kStop) {
            m_onSignal();
        }
    });
    std::signal(SIGINT, handler);
    std::signal(SIGTERM, handler);
}

QuitSignals::~QuitSignals() {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    if (m_thread.joinable()) {
        [[maybe_unused]] const ssize_t written = write(g_pipe[1], &kStop, 1);
        m_thread.join();
        close(g_pipe[0]);
        close(g_pipe[1]);
    }
}

}  // namespace cad
