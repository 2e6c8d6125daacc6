#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

/// A child process and its output, on any platform. The destructor kills the process unless it has already
/// exited.
class ProgramProcess {
public:
    /// Called on a reader thread with each piece of output. Lines end in a line feed on every platform.
    using Sink = std::function<void(const std::string&)>;

    /// Starts the command: the path of the program, then its arguments, in UTF-8. Throws std::runtime_error
    /// on failure.
    ProgramProcess(const std::vector<std::string>& command, Sink output, Sink errors);
    ProgramProcess(const ProgramProcess&) = delete;
    ProgramProcess& operator=(const ProgramProcess&) = delete;
    ~ProgramProcess();

    int id() const { return m_id; }
    void kill();
    /// Waits until the process has exited and all its output has been delivered. Returns its exit code, or
    /// the negative number of the signal that killed it.
    int wait();

private:
    int m_id = -1;
    /// The process handle on Windows; unused elsewhere.
    [[maybe_unused]] std::intptr_t m_handle = 0;
    bool m_ended = false;
    int m_exitCode = 0;
    std::thread m_outputReader;
    std::thread m_errorReader;
};

/// Sets an environment variable for programs started from now on; null removes it.
void setEnvironment(const char* name, const char* value);

/// Keeps a connection to the display open: an X server may reset when its last client disconnects, which
/// would lock out the next program. Throws std::runtime_error if there is no display.
void keepDisplayAwake();
