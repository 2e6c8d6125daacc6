#pragma once

#include "service/Options.h"
#include "service/Service.h"
#include "tests/service/ServiceClient.h"
#include "tests/service/TemporaryFolder.h"

namespace zentri::service {

/// A service in the test's process, on a free port, with its own database.
class RunningService {
public:
    explicit RunningService(Options options = quick()) : m_service(completed(std::move(options))) {
        m_service.start();
    }

    /// Options for answers without pauses, in large pieces.
    static Options quick() {
        Options options;
        options.delayMs = 0;
        options.piece = 20;
        return options;
    }

    ServiceClient client(const std::string& token = "anna") const {
        return ServiceClient(m_service.port(), token);
    }
    int port() const { return m_service.port(); }
    Service& service() { return m_service; }

private:
    Options completed(Options options) const {
        options.port = 0;
        options.database = m_folder.file("service.sqlite");
        return options;
    }

    TemporaryFolder m_folder;
    Service m_service;
};

}  // namespace zentri::service
