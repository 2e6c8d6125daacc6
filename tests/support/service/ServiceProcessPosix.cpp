#include <csignal>

#include "tests/service/ChildProgram.h"
#include "tests/support/service/ServiceProcess.h"

class ServiceProcess::Program : public zentri::service::ChildProgram {
    using ChildProgram::ChildProgram;
};

ServiceProcess::ServiceProcess(const std::vector<std::string>& options)
    : m_program(std::make_unique<Program>(allOptions(options))), m_port(portIn(m_program->readLine())) {}

ServiceProcess::~ServiceProcess() = default;

void ServiceProcess::kill() {
    m_program->send(SIGKILL);
}
