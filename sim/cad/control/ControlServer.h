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

/// One line from a client, waiting for its one answer. answer() may be called on any thread, once.
class ControlRequest {
public:
    explicit ControlRequest(std::string line) : m_line(std::move(line)) {}

    const std::string& line() const { return m_line; }
    void answer(std::string reply);
    /// Waits until the answer is there.
    std::string waitForAnswer();

private:
    std::string m_line;
    std::mutex m_mutex;
    std::condition_variable m_answered;
    std::string m_reply;
    bool m_hasReply = false;
};

/// Reads requests, a line each, from any number of loopback clients on threads of its own and hands them to
/// the thread that calls take(). A client gets its answers in the order of its requests.
class ControlServer {
public:
    /// The callback tells that a request waits; it is called on a thread of the server.
    explicit ControlServer(std::function<void()> onRequest);
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;
    /// Ends every connection; what was not answered is answered with `closing`.
    ~ControlServer();

    static constexpr const char* kClosing = "{\"ok\":false,\"error\":\"the program is closing\"}";

    /// Port 0 takes any free one. False with a reason when the port cannot be had.
    bool listen(int port, std::string& error);
    int port() const { return m_port; }

    /// The next request, or null.
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
