#include "sim/cad/control/ControlServer.h"

#include <gtest/gtest.h>

#include <chrono>

using cad::ControlRequest;
using cad::ControlServer;

namespace {

/// The client end of a connection.
class Client {
public:
    explicit Client(int port) : m_socket(cad::net::connectToLoopback(port)) {
        EXPECT_NE(m_socket, cad::net::kNoSocket);
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client() { cad::net::close(m_socket); }

    void send(const std::string& text) { cad::net::sendAll(m_socket, text); }

    /// Reads a line, without its line feed; if the connection ends first, what was received until then.
    std::string line() {
        std::string text;
        char c = 0;
        while (cad::net::receive(m_socket, &c, 1) == 1 && c != '\n') {
            text += c;
        }
        return text;
    }

private:
    cad::net::Socket m_socket;
};

class ControlServerTest : public testing::Test {
protected:
    ControlServerTest() {
        std::string error;
        EXPECT_TRUE(server->listen(0, error)) << error;
    }

    std::shared_ptr<ControlRequest> next() {
        std::unique_lock<std::mutex> lock(mutex);
        EXPECT_TRUE(arrived.wait_for(lock, std::chrono::seconds(20), [this] { return waiting > 0; }));
        --waiting;
        return server->take();
    }

    std::mutex mutex;
    std::condition_variable arrived;
    int waiting = 0;
    std::unique_ptr<ControlServer> server = std::make_unique<ControlServer>([this] {
        const std::lock_guard<std::mutex> lock(mutex);
        ++waiting;
        arrived.notify_all();
    });
};

}  // namespace

TEST_F(ControlServerTest, AnswersEachLine) {
    Client client(server->port());
    client.send("one\ntwo\n");
    const auto first = next();
    EXPECT_EQ(first->line(), "one");
    first->answer("1");
    EXPECT_EQ(client.line(), "1");
    const auto second = next();
    EXPECT_EQ(second->line(), "two");
    second->answer("2");
    EXPECT_EQ(client.line(), "2");
}

TEST_F(ControlServerTest, ServesSeveralClientsAtOnce) {
    Client slow(server->port());
    Client quick(server->port());
    slow.send("slow\n");
    const auto waitingRequest = next();
    quick.send("quick\n");
    next()->answer("done");
    EXPECT_EQ(quick.line(), "done");
    waitingRequest->answer("late");
    EXPECT_EQ(slow.line(), "late");
}

TEST_F(ControlServerTest, ReassemblesALineReceivedInPieces) {
    Client client(server->port());
    client.send("he");
    client.send("llo\n");
    const auto request = next();
    EXPECT_EQ(request->line(), "hello");
    request->answer("ok");
}

TEST_F(ControlServerTest, PendingRequestsAreAnsweredOnShutdown) {
    Client client(server->port());
    client.send("never answered\n");
    const auto request = next();
    server.reset();
    EXPECT_EQ(client.line(), ControlServer::kClosing);
}

TEST_F(ControlServerTest, ShutsDownWithAnIdleClientConnected) {
    Client client(server->port());
    client.send("x\n");
    next()->answer("y");
    EXPECT_EQ(client.line(), "y");
    server.reset();
    EXPECT_EQ(client.line(), "");
}

TEST_F(ControlServerTest, OverlongLineClosesTheConnection) {
    Client client(server->port());
    const std::string chunk(1 << 16, 'x');
    for (int i = 0; i < 64; ++i) {
        client.send(chunk);
    }
    EXPECT_EQ(client.line(), "");
}

TEST_F(ControlServerTest, BusyPortIsReported) {
    ControlServer second([] {});
    std::string error;
    EXPECT_FALSE(second.listen(server->port(), error));
    EXPECT_EQ(error.find("cannot listen on control port "), 0u);
}
