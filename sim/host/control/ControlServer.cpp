#include "sim/host/control/ControlServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace cad {

namespace {

constexpr size_t kChunk = 4096;
// A request is a few words; a client that sends no line feed must not fill the memory.
constexpr size_t kLongestLine = 1 << 20;

bool sendAll(int socket, const std::string& text) {
    size_t sent = 0;
    while (sent < text.size()) {
        const ssize_t count = ::send(socket, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        sent += static_cast<size_t>(count);
    }
    return true;
}

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
            // Answers may still be sent; nothing more is read.
            ::shutdown(client.socket, SHUT_RD);
        }
    }
    if (m_socket >= 0) {
        ::shutdown(m_socket, SHUT_RDWR);
    }
    if (m_acceptor.joinable()) {
        m_acceptor.join();
    }
    for (Client& client : m_clients) {
        client.thread.join();
        ::close(client.socket);
    }
    if (m_socket >= 0) {
        ::close(m_socket);
    }
}

bool ControlServer::listen(int port, std::string& error) {
    m_socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int reuse = 1;
    ::setsockopt(m_socket, SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<uint16_t>(port));
    socklen_t length = sizeof address;
    if (m_socket < 0 || ::bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(m_socket, SOMAXCONN) != 0 ||
        ::getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        error = "cannot listen on control port " + std::to_string(port) + ": " + std::strerror(errno);
        return false;
    }
    m_port = ntohs(address.sin_port);
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
        const int socket = ::accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) {
            if (errno == EINTR || errno == ECONNABORTED) {
                continue;
            }
            return;
        }
        const int noDelay = 1;
        ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &noDelay, sizeof noDelay);
        dropFinishedClients();
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_closing) {
            ::close(socket);
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
            ::close(client->socket);
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
        const ssize_t count = ::recv(client.socket, chunk, sizeof chunk, 0);
        if (count <= 0 || buffer.size() > kLongestLine) {
            break;
        }
        buffer.append(chunk, static_cast<size_t>(count));
        size_t feed = 0;
        while (going && (feed = buffer.find('\n')) != std::string::npos) {
            const std::string line = buffer.substr(0, feed);
            buffer.erase(0, feed + 1);
            going = handleLine(client.socket, line);
        }
    }
    ::shutdown(client.socket, SHUT_RDWR);
    client.done = true;
}

bool ControlServer::handleLine(int socket, const std::string& line) {
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
    return sendAll(socket, request->waitForAnswer() + "\n");
}

}  // namespace cad
