#include "tests/sim/host/HostProcess.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <csignal>
#include <memory>
#include <stdexcept>

namespace {

constexpr auto kLongTime = std::chrono::seconds(40);
constexpr auto kPollPause = std::chrono::milliseconds(20);
const std::string kAnnouncement = "control: 127.0.0.1:";

/// An X server may start anew when its last client leaves, which would shut out the next host. This process
/// stays connected.
void keepDisplayAwake() {
    static const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0) {
        throw std::runtime_error("no display; ./test brings one");
    }
}

}  // namespace

ControlConnection::ControlConnection(int port) : m_socket(cad::net::connectToLoopback(port)) {
    if (m_socket == cad::net::kNoSocket) {
        throw std::runtime_error("cannot connect to the control interface");
    }
    cad::net::setPatience(m_socket, static_cast<int>(std::chrono::seconds(kLongTime).count()));
}

ControlConnection::~ControlConnection() {
    cad::net::close(m_socket);
}

ControlConnection::Json ControlConnection::call(const Json& request) {
    const std::string sent = request.dump() + "\n";
    if (!cad::net::sendAll(m_socket, sent)) {
        throw std::runtime_error("the control interface is gone: " + sent);
    }
    size_t feed = 0;
    while ((feed = m_received.find('\n')) == std::string::npos) {
        char chunk[4096];
        const size_t count = cad::net::receive(m_socket, chunk, sizeof chunk);
        if (count == 0) {
            throw std::runtime_error("no answer to " + sent);
        }
        m_received.append(chunk, count);
    }
    const std::string answer = m_received.substr(0, feed);
    m_received.erase(0, feed + 1);
    return Json::parse(answer);
}

HostProcess::HostProcess(const std::vector<std::string>& arguments, bool connect) {
    if (connect) {
        keepDisplayAwake();
    }
    // For hosts built with a sanitizer; what the user set stays.
    setenv("LSAN_OPTIONS", "suppressions=" ZENTRI_SUPPRESSIONS "/lsan.supp", 0);
    setenv("TSAN_OPTIONS", "suppressions=" ZENTRI_SUPPRESSIONS "/tsan.supp", 0);
    std::vector<std::string> all = {ZENTRI_HOST_PROGRAM, "--control", "0"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& argument : all) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    int out[2];
    int err[2];
    if (pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipes");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err[1], STDERR_FILENO);
    const int failed = posix_spawn(&m_pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(out[1]);
    close(err[1]);
    if (failed != 0) {
        throw std::runtime_error("cannot start " + all[0]);
    }
    m_outputReader = std::thread([this, descriptor = out[0]] { read(descriptor, m_output); });
    m_errorReader = std::thread([this, descriptor = err[0]] { read(descriptor, m_errors); });
    if (!connect) {
        return;
    }
    std::unique_lock<std::mutex> lock(m_mutex);
    size_t at = 0;
    const bool announced = m_changed.wait_for(lock, kLongTime, [&] {
        at = m_output.find(kAnnouncement);
        return at != std::string::npos && m_output.find('\n', at) != std::string::npos;
    });
    const std::string errorsSoFar = m_errors;
    m_port = announced ? std::stoi(m_output.substr(at + kAnnouncement.size())) : 0;
    lock.unlock();
    if (!announced) {
        kill(m_pid, SIGKILL);
        waitForExit();
        throw std::runtime_error("the host did not start: " + errorsSoFar);
    }
    m_connection = std::make_unique<ControlConnection>(m_port);
}

HostProcess::~HostProcess() {
    if (!m_ended) {
        kill(m_pid, SIGKILL);
        waitForExit();
    }
}

void HostProcess::read(int descriptor, std::string& into) {
    char chunk[4096];
    ssize_t count = 0;
    while ((count = ::read(descriptor, chunk, sizeof chunk)) > 0) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        into.append(chunk, static_cast<size_t>(count));
        m_changed.notify_all();
    }
    close(descriptor);
}

HostProcess::Json HostProcess::ask(const std::string& command, Json arguments) {
    arguments["cmd"] = command;
    const Json answer = call(arguments);
    if (answer["ok"] != true) {
        throw std::runtime_error(arguments.dump() + ": " + answer.dump());
    }
    return answer;
}

bool HostProcess::waitUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + kLongTime;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(kPollPause);
    }
    return true;
}

bool HostProcess::waitForPrompt(const std::string& part) {
    return waitUntil([&] { return prompt().find(part) != std::string::npos; });
}

bool HostProcess::waitForLine(const std::string& part) {
    return waitUntil([&] { return text().find(part) != std::string::npos; });
}

HostProcess::Json HostProcess::window(const std::string& kind) {
    const Json windows = ask("windows")["windows"];
    for (const Json& found : windows) {
        if (found["kind"] == kind) {
            return found;
        }
    }
    return Json();
}

std::string HostProcess::output() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_output;
}

std::string HostProcess::errors() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_errors;
}

int HostProcess::waitForExit() {
    if (!m_ended) {
        int status = 0;
        waitpid(m_pid, &status, 0);
        m_ended = true;
        m_exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
        // What the process wrote last is still on its way.
        m_outputReader.join();
        m_errorReader.join();
    }
    return m_exitCode;
}
