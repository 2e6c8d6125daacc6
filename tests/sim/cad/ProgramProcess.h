#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

/// A running program and what it writes, the same on every platform. It is killed when the object dies,
/// unless it has ended by itself.
class ProgramProcess {
public:
    /// Is given each piece of output, with line feeds as line ends, on a thread of its own.
    using Sink = std::function<void(const std::string&)>;

    /// Starts the command: the program's file, then its arguments, in UTF-8. Throws std::runtime_error
    /// without success.
    ProgramProcess(const std::vector<std::string>& command, Sink output, Sink errors);
    ProgramProcess(const ProgramProcess&) = delete;
    ProgramProcess& operator=(const ProgramProcess&) = delete;
    ~ProgramProcess();

    int id() const { return m_id; }
    void kill();
    /// Waits until it has ended and all its output has come. Its exit code, or minus the signal that ended
    /// it.
    int wait();

private:
    int m_id = -1;
    /// What the system calls the process, where that is not its id.
    std::intptr_t m_handle = 0;
    bool m_ended = false;
    int m_exitCode = 0;
    std::thread m_outputReader;
    std::thread m_errorReader;
};

/// Sets a variable for the programs started from now on; null takes it away.
void setEnvironment(const char* name, const char* value);

/// Stays connected to the display: an X server may start anew when its last client leaves, which would shut
/// out the next program. Throws std::runtime_error when there is no display.
void keepDisplayAwake();
