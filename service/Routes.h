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

/// The handlers of the service's HTTP calls, which run concurrently on the server's worker threads. Session
/// calls always reply with HTTP 200 and report success or failure in the envelope {"code","msg","data"}; the
/// chat call reports failure as an HTTP error status, so that a client that expects a stream sees at once
/// that there is none.
class Routes {
public:
    /// The handlers' dependencies and settings; all of them must outlive the server.
    struct Parts {
        Database& database;
        Answerer& answerer;
        FaultPlan& faults;
        StopSignal& stop;
        bool allowFaults = false;
        bool verbose = false;
    };

    explicit Routes(const Parts& parts) : m_parts(parts) {}

    /// Registers the handlers; this object must outlive the server.
    void addTo(httplib::Server& server);

private:
    void health(httplib::Response& response);
    void chat(const httplib::Request& request, httplib::Response& response);
    void createSession(const httplib::Request& request, httplib::Response& response);
    void listSessions(const httplib::Request& request, httplib::Response& response);
    void readSession(const httplib::Request& request, httplib::Response& response);
    void addFaults(const httplib::Request& request, httplib::Response& response);

    /// Applies the faults that precede the reply; false when the response is already complete.
    bool begin(const RequestFaults& faults, httplib::Response& response);
    /// The user of the request's token; nullopt when it has none.
    std::optional<std::int64_t> userOf(const httplib::Request& request);
    /// Streams one answer and stores what was sent; returns whether the reply ended properly.
    bool stream(httplib::DataSink& sink, const Conversation& conversation, const std::string& sessionId,
                const RequestFaults& faults);
    /// Logs a request's outcome with --verbose; tokens are never logged.
    void log(const httplib::Request& request, const std::string& outcome);

    const Parts m_parts;
};

}  // namespace zentri::service
