#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "service/Answerer.h"
#include "service/Database.h"
#include "service/FaultPlan.h"
#include "service/StopSignal.h"

namespace httplib {
class DataSink;
class Server;
struct Request;
struct Response;
}  // namespace httplib

namespace zentri::service {

/// The service's HTTP calls. Session calls always answer with HTTP 200 and say in their envelope
/// {"code","msg","data"} whether they worked; the chat call refuses with an HTTP error status, so that a
/// client that waits for a stream sees at once that none will come.
class Routes {
public:
    /// What the calls work with; all of it must outlive the server.
    struct Parts {
        Database& database;
        Answerer& answerer;
        FaultPlan& faults;
        StopSignal& stop;
        bool allowFaults = false;
        bool verbose = false;
    };

    explicit Routes(const Parts& parts) : m_parts(parts) {}

    void addTo(httplib::Server& server);

private:
    void health(httplib::Response& response);
    void chat(const httplib::Request& request, httplib::Response& response);
    void createSession(const httplib::Request& request, httplib::Response& response);
    void listSessions(const httplib::Request& request, httplib::Response& response);
    void readSession(const httplib::Request& request, httplib::Response& response);
    void addFaults(const httplib::Request& request, httplib::Response& response);

    /// Waits or fails as the faults say; false when the response stands already.
    bool begin(const RequestFaults& faults, httplib::Response& response);
    std::optional<std::int64_t> userOf(const httplib::Request& request);
    /// Runs one chat reply over the connection; returns whether the reply ended properly.
    bool stream(httplib::DataSink& sink, const Conversation& conversation, const std::string& sessionId,
                const RequestFaults& faults);
    void log(const httplib::Request& request, const std::string& outcome);

    const Parts m_parts;
};

}  // namespace zentri::service
