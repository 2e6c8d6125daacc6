#pragma once

#include <memory>
#include <string>
#include <vector>

/// A running zentri-service on a free loopback port, which keeps its sessions in memory. It is killed when
/// the object dies.
class ServiceProcess {
public:
    /// Starts it with these options besides. Throws std::runtime_error without success.
    explicit ServiceProcess(const std::vector<std::string>& options);
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;
    ~ServiceProcess();

    int port() const { return m_port; }
    /// As ZR_ZENTRI_SERVICE takes it.
    std::string address() const { return "127.0.0.1:" + std::to_string(m_port); }
    /// Breaks off what it is doing.
    void kill();

private:
    class Program;

    /// What it is started with.
    static std::vector<std::string> allOptions(const std::vector<std::string>& options);
    /// The port from the line that it prints when it listens; throws when it says something else.
    static int portIn(const std::string& line);

    std::unique_ptr<Program> m_program;
    int m_port = 0;
};
