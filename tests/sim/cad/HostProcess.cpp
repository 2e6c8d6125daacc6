#include "tests/sim/cad/HostProcess.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <utility>

namespace {

constexpr auto kLongTime = std::chrono::seconds(40);
constexpr auto kPollPause = std::chrono::milliseconds(20);
const std::string kAnnouncement = "control: 127.0.0.1:";

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
        throw std::runtime_error("the control interface closed the connection before " + sent);
    }
    size_t feed = 0;
    while ((feed = m_received.find('\n')) == std::string::npos) {
        char chunk[4096];
        const size_t count = cad::net::receive(m_socket, chunk, sizeof chunk);
        if (count == 0) {
            throw std::runtime_error("no reply to " + sent);
        }
        m_received.append(chunk, count);
    }
    const std::string answer = m_received.substr(0, feed);
    m_received.erase(0, feed + 1);
    return Json::parse(answer);
}

HostProcess::HostProcess(const std::vector<std::string>& arguments, bool connect,
                         const std::string& program) {
    if (connect) {
        keepDisplayAwake();
    }
    // For hosts built with a sanitizer; the user's own settings take precedence.
    for (const auto& [name, value] :
         {std::pair("LSAN_OPTIONS", "suppressions=" ZENTRI_SUPPRESSIONS "/lsan.supp"),
          std::pair("TSAN_OPTIONS", "suppressions=" ZENTRI_SUPPRESSIONS "/tsan.supp")}) {
        if (std::getenv(name) == nullptr) {
            setEnvironment(name, value);
        }
    }
    std::vector<std::string> all = {program.empty() ? ZENTRI_HOST_PROGRAM : program, "--control", "0"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    m_process = std::make_unique<ProgramProcess>(
        all, [this](const std::string& text) { append(m_output, text); },
        [this](const std::string& text) { append(m_errors, text); });
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
        m_process->kill();
        m_process->wait();
        throw std::runtime_error("the host did not start: " + errorsSoFar);
    }
    m_connection = std::make_unique<ControlConnection>(m_port);
}

HostProcess::~HostProcess() = default;

void HostProcess::append(std::string& to, const std::string& text) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    to += text;
    m_changed.notify_all();
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
    return m_process->wait();
}
