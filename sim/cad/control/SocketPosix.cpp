#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "sim/cad/control/Socket.h"

namespace cad::net {

namespace {

int descriptor(Socket socket) {
    return static_cast<int>(socket);
}

sockaddr_in loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<uint16_t>(port));
    return address;
}

}  // namespace

Socket listenOnLoopback(int& port, std::string& error) {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int reuse = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse);
    sockaddr_in address = loopback(port);
    socklen_t length = sizeof address;
    if (socket < 0 || ::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(socket, SOMAXCONN) != 0 ||
        ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        error = std::strerror(errno);
        if (socket >= 0) {
            ::close(socket);
        }
        return kNoSocket;
    }
    port = ntohs(address.sin_port);
    return socket;
}

Socket acceptClient(Socket listener) {
    for (;;) {
        const int socket = ::accept4(descriptor(listener), nullptr, nullptr, SOCK_CLOEXEC);
        if (socket >= 0) {
            const int noDelay = 1;
            ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &noDelay, sizeof noDelay);
            return socket;
        }
        if (errno != EINTR && errno != ECONNABORTED) {
            return kNoSocket;
        }
    }
}

void wakeListener(Socket listener) {
    ::shutdown(descriptor(listener), SHUT_RDWR);
}

Socket connectToLoopback(int port) {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopback(port);
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(socket);
        return kNoSocket;
    }
    return socket;
}

std::size_t receive(Socket socket, char* buffer, std::size_t size) {
    const ssize_t count = ::recv(descriptor(socket), buffer, size, 0);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool sendAll(Socket socket, const std::string& text) {
    std::size_t sent = 0;
    while (sent < text.size()) {
        const ssize_t count =
            ::send(descriptor(socket), text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        sent += static_cast<std::size_t>(count);
    }
    return true;
}

void stopReceiving(Socket socket) {
    ::shutdown(descriptor(socket), SHUT_RD);
}

void close(Socket socket) {
    ::close(descriptor(socket));
}

void setPatience(Socket socket, int seconds) {
    timeval patience{};
    patience.tv_sec = seconds;
    ::setsockopt(descriptor(socket), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
}

}  // namespace cad::net
