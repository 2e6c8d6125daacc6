#include <winsock2.h>

#include <system_error>

#include "sim/cad/control/Socket.h"

namespace cad::net {

namespace {

/// Starts Winsock on first use; it is never cleaned up.
void startLibrary() {
    static const bool started = [] {
        WSADATA data;
        return WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    static_cast<void>(started);
}

SOCKET handle(Socket socket) {
    return static_cast<SOCKET>(socket);
}

Socket newSocket() {
    startLibrary();
    const SOCKET socket = ::socket(AF_INET, SOCK_STREAM, 0);
    if (socket == INVALID_SOCKET) {
        return kNoSocket;
    }
    // Child processes must not inherit connections and keep them open.
    ::SetHandleInformation(reinterpret_cast<HANDLE>(socket), HANDLE_FLAG_INHERIT, 0);
    return static_cast<Socket>(socket);
}

sockaddr_in loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<u_short>(port));
    return address;
}

}  // namespace

Socket listenOnLoopback(int& port, std::string& error) {
    const Socket socket = newSocket();
    // No other process may bind the port as well.
    const BOOL exclusive = TRUE;
    ::setsockopt(handle(socket), SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&exclusive),
                 sizeof exclusive);
    sockaddr_in address = loopback(port);
    int length = sizeof address;
    if (socket == kNoSocket ||
        ::bind(handle(socket), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(handle(socket), SOMAXCONN) != 0 ||
        ::getsockname(handle(socket), reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        error = std::system_category().message(::WSAGetLastError());
        close(socket);
        return kNoSocket;
    }
    port = ntohs(address.sin_port);
    return socket;
}

Socket acceptClient(Socket listener) {
    for (;;) {
        const SOCKET socket = ::accept(handle(listener), nullptr, nullptr);
        if (socket != INVALID_SOCKET) {
            const BOOL noDelay = TRUE;
            ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&noDelay),
                         sizeof noDelay);
            return static_cast<Socket>(socket);
        }
        if (::WSAGetLastError() != WSAECONNRESET) {
            return kNoSocket;
        }
    }
}

void wakeListener(Socket listener) {
    ::closesocket(handle(listener));
}

Socket connectToLoopback(int port) {
    const Socket socket = newSocket();
    const sockaddr_in address = loopback(port);
    if (::connect(handle(socket), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        close(socket);
        return kNoSocket;
    }
    return socket;
}

std::size_t receive(Socket socket, char* buffer, std::size_t size) {
    const int count = ::recv(handle(socket), buffer, static_cast<int>(size), 0);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool sendAll(Socket socket, const std::string& text) {
    std::size_t sent = 0;
    while (sent < text.size()) {
        const int count = ::send(handle(socket), text.data() + sent, static_cast<int>(text.size() - sent), 0);
        if (count <= 0) {
            return false;
        }
        sent += static_cast<std::size_t>(count);
    }
    return true;
}

void stopReceiving(Socket socket) {
    ::shutdown(handle(socket), SD_RECEIVE);
    // On some systems shutdown() does not unblock a recv() in progress.
    ::CancelIoEx(reinterpret_cast<HANDLE>(socket), nullptr);
}

void close(Socket socket) {
    ::closesocket(handle(socket));
}

void setPatience(Socket socket, int seconds) {
    const DWORD milliseconds = static_cast<DWORD>(seconds) * 1000;
    ::setsockopt(handle(socket), SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&milliseconds),
                 sizeof milliseconds);
}

}  // namespace cad::net
