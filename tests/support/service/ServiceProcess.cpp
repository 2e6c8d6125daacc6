#include "tests/support/service/ServiceProcess.h"

#include <stdexcept>

std::vector<std::string> ServiceProcess::allOptions(const std::vector<std::string>& options) {
    std::vector<std::string> all = {"--listen", "127.0.0.1:0", "--database", ":memory:"};
    all.insert(all.end(), options.begin(), options.end());
    return all;
}

int ServiceProcess::portIn(const std::string& line) {
    const std::string beginning = "zentri-service listening on http://127.0.0.1:";
    if (line.rfind(beginning, 0) != 0) {
        throw std::runtime_error("the service is not listening; it printed: \"" + line + "\"");
    }
    return std::stoi(line.substr(beginning.size()));
}
