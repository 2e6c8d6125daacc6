#include "sim/cad/control/ControlServer.h"

namespace cad {

namespace {

constexpr size_t kChunk = 4096;
// Requests are short; a client that never sends a line feed must not exhaust memory.
constexpr size_t kLongestLine = 1 << 20;

}  // namespace

void ControlRequest::answer(std::string reply) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_hasReply) {
        m_reply = std::move(reply);
        m_hasReply = true;
        m_answered.notify_all();
    }
}

std::string ControlRequest::waitForAnswer() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_answered.wait(lock, [this] { return m_hasReply; });
    return m_reply;
}

ControlServer::ControlServer(std::function<void()> onRequest) : m_onRequest(std::move(onRequest)) {}

ControlServer::~ControlServer() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_closing = true;
        for (const std::weak_ptr<ControlRequest>& open : m_open) {
            if (const auto request = open.lock()) {
                request->answer(kClosing);
            }
        }
        for (Client& client : m_clients) {
            // Pending replies can still be sent, but nothing more is read.
            if (client.socket != net::kNoSocket) {
                net::stopReceiving(client.socket);
            }
        }
    }
    if (m_socket != net::kNoSocket) {
        net::wakeListener(m_socket);
    }
    if (m_acceptor.joinable()) {
        m_acceptor.join();
    }
    for (Client& client : m_clients) {
        client.thread.join();
    }
    if (m_socket != net::kNoSocket) {
        net::close(m_socket);
    }
}

bool ControlServer::listen(int port, std::string& error) {
    std::string reason;
    m_socket = net::listenOnLoopback(port, reason);
    if (m_socket == net::kNoSocket) {
        error = "cannot listen on control port " + std::to_string(port) + ": " + reason;
        return false;
    }
    m_port = port;
    m_acceptor = std::thread([this] { acceptClients(); });
    return true;
}

std::shared_ptr<ControlRequest> ControlServer::take() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_waiting.empty()) {
        return nullptr;
    }
    const auto request = m_waiting.front();
    m_waiting.pop_front();
    return request;
}

void ControlServer::acceptClients() {
    for (;;) {
        const net::Socket socket = net::acceptClient(m_socket);
        if (socket == net::kNoSocket) {
            return;
        }
        dropFinishedClients();
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_closing) {
            net::close(socket);
            return;
        }
        Client& client = m_clients.emplace_back();
        client.socket = socket;
        client.thread = std::thread([this, &client] { serve(client); });
    }
}

void ControlServer::dropFinishedClients() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (auto client = m_clients.begin(); client != m_clients.end();) {
        if (client->done) {
            client->thread.join();
            client = m_clients.erase(client);
        } else {
            ++client;
        }
    }
}

void ControlServer::serve(Client& client) {
    std::string buffer;
    char chunk[kChunk];
    bool going = true;
    while (going) {
        const size_t count = net::receive(client.socket, chunk, sizeof chunk);
        if (count == 0 || buffer.size() > kLongestLine) {
            break;
        }
        buffer.append(chunk, count);
        size_t feed = 0;
        while (going && (feed = buffer.find('\n')) != std::string::npos) {
            const std::string line = buffer.substr(0, feed);
            buffer.erase(0, feed + 1);
            going = handleLine(client.socket, line);
        }
    }
    // Close at once: a client that is still sending would otherwise block.
    const std::lock_guard<std::mutex> lock(m_mutex);
    net::close(client.socket);
    client.socket = net::kNoSocket;
    client.done = true;
}

bool ControlServer::handleLine(net::Socket socket, const std::string& line) {
    const auto request = std::make_shared<ControlRequest>(line);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_closing) {
            request->answer(kClosing);
        } else {
            m_waiting.push_back(request);
            m_open.remove_if([](const std::weak_ptr<ControlRequest>& open) { return open.expired(); });
            m_open.push_back(request);
        }
    }
    m_onRequest();
    return net::sendAll(socket, request->waitForAnswer() + "\n");
}

}  // namespace cad
