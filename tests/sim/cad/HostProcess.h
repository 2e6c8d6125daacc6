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

    /// Throws std::runtime_error when there is nobody at the port.
    explicit ControlConnection(int port);
    ControlConnection(const ControlConnection&) = delete;
    ControlConnection& operator=(const ControlConnection&) = delete;
    ~ControlConnection();

    /// Sends a request and returns the answer, whatever it says.
    Json call(const Json& request);

private:
    cad::net::Socket m_socket;
    std::string m_received;
};

/// A running zentri-host and its control interface. Needs a display. The process is killed when the object
/// dies, unless it has ended by itself.
class HostProcess {
public:
    using Json = nlohmann::json;

    /// `--control 0` is added. With `connect` the constructor returns when the control interface answers;
    /// throws std::runtime_error when it never does. The program is the one of this build unless told.
    explicit HostProcess(const std::vector<std::string>& arguments, bool connect = true,
                         const std::string& program = std::string());
    HostProcess(const HostProcess&) = delete;
    HostProcess& operator=(const HostProcess&) = delete;
    ~HostProcess();

    /// Sends a request and returns the answer, whatever it says.
    Json call(const Json& request) { return m_connection->call(request); }
    /// The same for requests that must succeed: throws std::runtime_error otherwise.
    Json ask(const std::string& command, Json arguments = Json::object());
    void type(const std::string& text) { ask("typeText", {{"text", text}}); }
    void idle() { ask("idle"); }

    /// Asks again and again until the condition holds; false when it still does not after a long time.
    static bool waitUntil(const std::function<bool()>& condition);
    bool waitForPrompt(const std::string& part);
    bool waitForLine(const std::string& part);
    std::string prompt() { return ask("commandLine")["prompt"]; }
    std::string text() { return ask("commandLine")["text"]; }
    /// The first window of the kind; null when there is none.
    Json window(const std::string& kind);

    /// For requests that are answered later than others.
    std::unique_ptr<ControlConnection> connectAgain() const {
        return std::make_unique<ControlConnection>(m_port);
    }

    int pid() const { return m_process->id(); }
    /// What the process wrote so far.
    std::string output();
    std::string errors();
    /// Waits for the process to end and returns its exit code, or minus the signal that ended it.
    int waitForExit();

private:
    void append(std::string& to, const std::string& text);

    int m_port = 0;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_output;
    std::string m_errors;
    // Its threads use what stands above.
    std::unique_ptr<ProgramProcess> m_process;
    std::unique_ptr<ControlConnection> m_connection;
};
