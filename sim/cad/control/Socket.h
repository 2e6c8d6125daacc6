#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Blocking loopback sockets, the same on every platform. Any thread.

namespace cad::net {

/// What the system calls a socket; kNoSocket is none.
using Socket = std::intptr_t;
constexpr Socket kNoSocket = -1;

/// Listens on 127.0.0.1; port 0 takes any free one. The port that was had stands in `port` afterwards.
/// Without success `error` tells the system's reason.
Socket listenOnLoopback(int& port, std::string& error);
/// The next client, with its answers sent without delay; kNoSocket once the listening socket was woken.
Socket acceptClient(Socket listener);
/// Makes acceptClient return.
void wakeListener(Socket listener);

Socket connectToLoopback(int port);

/// Reads what is there, waiting for the first byte; 0 at the end of the stream and when it broke.
std::size_t receive(Socket socket, char* buffer, std::size_t size);
bool sendAll(Socket socket, const std::string& text);
/// receive() returns 0 from now on, also one that waits; sending goes on.
void stopReceiving(Socket socket);
void close(Socket socket);
/// How long receive() waits for a byte.
void setPatience(Socket socket, int seconds);

}  // namespace cad::net
