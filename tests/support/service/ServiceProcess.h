#pragma once

#include <memory>
#include <string>
#include <vector>

/// A running zentri-service on a free loopback port, with its database in memory. The destructor kills it.
class ServiceProcess {
public:
    /// Starts the service with these additional options. Throws std::runtime_error on failure.
    explicit ServiceProcess(const std::vector<std::string>& options);
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;
    ~ServiceProcess();

    int port() const { return m_port; }
    /// In the form that ZR_ZENTRI_SERVICE takes.
    std::string address() const { return "127.0.0.1:" + std::to_string(m_port); }
    /// Kills the process, even in the middle of a reply.
    void kill();

private:
    class Program;

    /// The options that every test needs, followed by `options`.
    static std::vector<std::string> allOptions(const std::vector<std::string>& options);
    /// The port from the line that the service prints once it is listening; throws if it is any other line.
    static int portIn(const std::string& line);

    std::unique_ptr<Program> m_program;
    int m_port = 0;
};
