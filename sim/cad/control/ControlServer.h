#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "sim/cad/control/Socket.h"

namespace cad {

/// One line from a client, and its reply. answer() may be called on any thread; only the first call counts.
class ControlRequest {
public:
    explicit ControlRequest(std::string line) : m_line(std::move(line)) {}

    const std::string& line() const { return m_line; }
    void answer(std::string reply);
    /// Blocks until answer() has been called.
    std::string waitForAnswer();

private:
    std::string m_line;
    std::mutex m_mutex;
    std::condition_variable m_answered;
    std::string m_reply;
    bool m_hasReply = false;
};

/// Reads line-delimited requests from any number of loopback clients, on one thread per client, and queues
/// them for the thread that calls take(). A client receives its replies in the order of its requests.
class ControlServer {
public:
    /// `onRequest` is called on a thread of the server when a request has been queued.
    explicit ControlServer(std::function<void()> onRequest);
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;
    /// Closes every connection; pending requests are answered with kClosing.
    ~ControlServer();

    static constexpr const char* kClosing = "{\"ok\":false,\"error\":\"the program is closing\"}";

    /// Port 0 binds any free port. On failure returns false and sets `error`.
    bool listen(int port, std::string& error);
    int port() const { return m_port; }

    /// The next queued request, or null.
    std::shared_ptr<ControlRequest> take();

private:
    struct Client {
        net::Socket socket;
        std::thread thread;
        std::atomic<bool> done{false};
    };

    void acceptClients();
    void serve(Client& client);
    bool handleLine(net::Socket socket, const std::string& line);
    void dropFinishedClients();

    std::function<void()> m_onRequest;
    net::Socket m_socket = net::kNoSocket;
    int m_port = 0;
    std::thread m_acceptor;
    std::mutex m_mutex;
    std::list<Client> m_clients;
    std::deque<std::shared_ptr<ControlRequest>> m_waiting;
    std::list<std::weak_ptr<ControlRequest>> m_open;
    bool m_closing = false;
};

}  // namespace cad
