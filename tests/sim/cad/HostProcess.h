#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "sim/cad/control/Socket.h"
#include "tests/sim/cad/ProgramProcess.h"

/// A connection to a host's control interface.
class ControlConnection {
public:
    using Json = nlohmann::json;

    /// Throws std::runtime_error if nothing listens on the port.
    explicit ControlConnection(int port);
    ControlConnection(const ControlConnection&) = delete;
    ControlConnection& operator=(const ControlConnection&) = delete;
    ~ControlConnection();

    /// Sends a request and returns the reply, whether it reports success or failure.
    Json call(const Json& request);

private:
    cad::net::Socket m_socket;
    std::string m_received;
};

/// A running zentri-host and its control interface. Needs a display. The destructor kills the process unless
/// it has already exited.
class HostProcess {
public:
    using Json = nlohmann::json;

    /// `--control 0` is added to the arguments. With `connect` the constructor blocks until it is connected
    /// to the control interface, and throws std::runtime_error on a timeout. An empty `program` is the
    /// zentri-host of this build.
    explicit HostProcess(const std::vector<std::string>& arguments, bool connect = true,
                         const std::string& program = std::string());
    HostProcess(const HostProcess&) = delete;
    HostProcess& operator=(const HostProcess&) = delete;
    ~HostProcess();

    /// Sends a request and returns the reply, whether it reports success or failure.
    Json call(const Json& request) { return m_connection->call(request); }
    /// Sends a request that must succeed: throws std::runtime_error otherwise.
    Json ask(const std::string& command, Json arguments = Json::object());
    void type(const std::string& text) { ask("typeText", {{"text", text}}); }
    void idle() { ask("idle"); }

    /// Polls until the condition holds; false on a (generous) timeout.
    static bool waitUntil(const std::function<bool()>& condition);
    bool waitForPrompt(const std::string& part);
    bool waitForLine(const std::string& part);
    std::string prompt() { return ask("commandLine")["prompt"]; }
    std::string text() { return ask("commandLine")["text"]; }
    /// The first window of the kind; null if there is none.
    Json window(const std::string& kind);

    /// A second connection, for requests whose reply is delayed.
    std::unique_ptr<ControlConnection> connectAgain() const {
        return std::make_unique<ControlConnection>(m_port);
    }

    int pid() const { return m_process->id(); }
    /// What the process has written so far to standard output and standard error.
    std::string output();
    std::string errors();
    /// Waits for the process to exit; returns its exit code, or the negated signal number if it was killed.
    int waitForExit();

private:
    void append(std::string& to, const std::string& text);

    int m_port = 0;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_output;
    std::string m_errors;
    // After the members above, which its reader threads use: it must be destroyed before them.
    std::unique_ptr<ProgramProcess> m_process;
    std::unique_ptr<ControlConnection> m_connection;
};
