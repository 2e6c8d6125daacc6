#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Blocking loopback sockets, the same on every platform. Any thread.

namespace cad::net {

/// A native socket handle; kNoSocket if there is none.
using Socket = std::intptr_t;
constexpr Socket kNoSocket = -1;

/// Listens on 127.0.0.1; port 0 binds any free port. `port` receives the bound port. On failure returns
/// kNoSocket, and `error` receives the system's error message.
Socket listenOnLoopback(int& port, std::string& error);
/// Blocks until a client connects; its socket has TCP_NODELAY set. kNoSocket after wakeListener().
Socket acceptClient(Socket listener);
/// Makes a blocked acceptClient() return kNoSocket. The listener accepts no further clients.
void wakeListener(Socket listener);

Socket connectToLoopback(int port);

/// Reads the available bytes, blocking for the first one; 0 at the end of the stream, on an error or on a
/// timeout.
std::size_t receive(Socket socket, char* buffer, std::size_t size);
bool sendAll(Socket socket, const std::string& text);
/// Makes receive() return 0 from now on, a call already blocked included. Sending still works.
void stopReceiving(Socket socket);
void close(Socket socket);
/// Sets the timeout of receive().
void setPatience(Socket socket, int seconds);

}  // namespace cad::net
