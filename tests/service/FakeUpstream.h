#pragma once

#include <httplib.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

namespace zentri::service {

/// A chat-completions server with scripted replies, over a real socket.
class FakeUpstream {
public:
    /// Writes the reply's bytes with `send`, which returns false once the client has disconnected. Returns
    /// whether the reply ends properly; otherwise the connection is cut. Runs on a server thread.
    using Script = std::function<bool(const std::function<bool(const std::string&)>& send)>;

    explicit FakeUpstream(std::unique_ptr<httplib::Server> server = std::make_unique<httplib::Server>())
        : m_server(std::move(server)) {
        m_server->Post(
            "/v1/chat/completions", [this](const httplib::Request& request, httplib::Response& response) {
                {
                    const std::lock_guard lock(m_mutex);
                    m_requests.push_back(request);
                }
                response.status = status;
                if (status != 200) {
                    response.set_content(body, "application/json");
                    return;
                }
                if (!script) {
                    response.set_content(body, type);
                    return;
                }
                response.set_chunked_content_provider(type, [this](std::size_t, httplib::DataSink& sink) {
                    const bool proper = script([&](const std::string& bytes) {
                        return sink.is_writable() && sink.write(bytes.data(), bytes.size());
                    });
                    if (proper) {
                        sink.done();
                    }
                    return proper;
                });
            });
        m_port = m_server->bind_to_any_port("127.0.0.1");
        m_thread = std::thread([this] { m_server->listen_after_bind(); });
        while (!m_server->is_running()) {
            std::this_thread::yield();
        }
    }

    ~FakeUpstream() {
        m_server->stop();
        m_thread.join();
    }

    int port() const { return m_port; }
    std::string url(const std::string& scheme = "http") const {
        return scheme + "://127.0.0.1:" + std::to_string(m_port) + "/v1";
    }

    std::vector<httplib::Request> requests() const {
        const std::lock_guard lock(m_mutex);
        return m_requests;
    }

    /// An event with a piece of the answer, and the event that ends a stream.
    static std::string delta(const std::string& text) {
        return "data: " +
               nlohmann::json{{"choices", {{{"index", 0}, {"delta", {{"content", text}}}}}}}.dump() + "\n\n";
    }
    static std::string done() { return "data: [DONE]\n\n"; }

    // Set these before the first request. Without a script, or with another status, the reply is `body`.
    int status = 200;
    std::string type = "text/event-stream";
    std::string body;
    Script script;

private:
    std::unique_ptr<httplib::Server> m_server;
    mutable std::mutex m_mutex;
    std::vector<httplib::Request> m_requests;
    int m_port = 0;
    std::thread m_thread;
};

/// A one-shot event that one thread signals and another waits for.
class Gate {
public:
    void open() {
        const std::lock_guard lock(m_mutex);
        m_open = true;
        m_changed.notify_all();
    }
    /// False after a timeout of 30 seconds.
    bool wait() {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(30), [this] { return m_open; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_open = false;
};

}  // namespace zentri::service
