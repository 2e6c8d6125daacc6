// The service is a Linux program: a program in Wine can neither read its output nor kill it. with-services
// does both. It starts one service per connection, and kills it when the connection is closed.

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "sim/cad/control/Socket.h"
#include "tests/support/service/ServiceProcess.h"

class ServiceProcess::Program {
public:
    explicit Program(const std::vector<std::string>& options) {
        const char* const port = std::getenv("ZENTRI_TEST_SERVICES");
        if (port == nullptr) {
            throw std::runtime_error("run this test through tests/support/service/with-services");
        }
        m_socket = cad::net::connectToLoopback(std::atoi(port));
        if (m_socket == cad::net::kNoSocket ||
            !cad::net::sendAll(m_socket, nlohmann::json(options).dump() + "\n")) {
            throw std::runtime_error("cannot reach with-services on its port");
        }
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() { close(); }

    std::string readLine() {
        std::string line;
        char c = 0;
        while (cad::net::receive(m_socket, &c, 1) == 1 && c != '\n') {
            line += c;
        }
        return line;
    }

    void close() {
        if (m_socket != cad::net::kNoSocket) {
            cad::net::close(m_socket);
            m_socket = cad::net::kNoSocket;
        }
    }

private:
    cad::net::Socket m_socket = cad::net::kNoSocket;
};

ServiceProcess::ServiceProcess(const std::vector<std::string>& options)
    : m_program(std::make_unique<Program>(allOptions(options))), m_port(portIn(m_program->readLine())) {}

ServiceProcess::~ServiceProcess() = default;

void ServiceProcess::kill() {
    m_program->close();
}
