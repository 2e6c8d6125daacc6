#include "service/Service.h"

#include <httplib.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <thread>

#include "service/BuiltInAnswerer.h"
#include "service/Database.h"
#include "service/KnowledgeBase.h"
#include "service/Routes.h"
#include "service/Seeder.h"
#include "service/UpstreamAnswerer.h"

namespace zentri::service {

namespace {

/// Limit for a request body, in bytes.
constexpr std::size_t kLargestRequest = 1U << 20U;
constexpr int kBacklog = 128;
/// Clients load a history with one request per session over a single connection.
constexpr std::size_t kRequestsPerConnection = 100000;
/// Keep-alive timeout. An idle connection occupies a worker thread, and stop() waits for it.
constexpr int kIdleSeconds = 1;
constexpr int kReadSeconds = 10;
constexpr int kWriteSeconds = 10;
constexpr std::chrono::milliseconds kStartPoll{1};

class HttpServer : public httplib::Server {
public:
    /// The library listens with a backlog of five, which overflows when several clients connect at once.
    void widenBacklog() { ::listen(svr_sock_, kBacklog); }
};

std::vector<Topic> topicsFor(const Options& options) {
    return options.knowledgeDirectory.empty() ? KnowledgeBase::builtInTopics()
                                              : KnowledgeBase::topicsIn(options.knowledgeDirectory);
}

std::unique_ptr<Answerer> makeAnswerer(const Options& options, const KnowledgeBase& knowledge) {
    if (options.upstreamUrl.empty()) {
        return std::make_unique<BuiltInAnswerer>(
            knowledge, Pace{std::chrono::milliseconds(options.delayMs), options.piece});
    }
    UpstreamSettings settings = upstreamFromUrl(options.upstreamUrl);
    settings.model = options.upstreamModel;
    settings.key = options.upstreamKey;
    settings.caFile = options.upstreamCaFile;
    settings.timeout = std::chrono::seconds(options.upstreamTimeoutSeconds);
    return std::make_unique<UpstreamAnswerer>(std::move(settings));
}

}  // namespace

struct Service::Parts {
    explicit Parts(const Options& options)
        : knowledge(topicsFor(options)),
          database(options.database),
          answerer(makeAnswerer(options, knowledge)),
          routes({database, *answerer, faults, stop, options.allowFaults, options.verbose}) {}

    KnowledgeBase knowledge;
    Database database;
    FaultPlan faults;
    StopSignal stop;
    std::unique_ptr<Answerer> answerer;
    Routes routes;
    HttpServer server;
    std::thread listener;
    int port = 0;
};

Service::Service(const Options& options) : m_options(options) {
    try {
        m_parts = std::make_unique<Parts>(options);
        for (const Fault& fault : options.faults) {
            m_parts->faults.add(fault);
        }
        if (!options.seed.empty()) {
            seedHistory(m_parts->database, m_parts->knowledge, options.seed, options.seedToken,
                        options.seedSessions);
        }
    } catch (const std::exception& error) {
        throw StartError(error.what());
    }
}

Service::~Service() {
    stop();
}

void Service::start() {
    HttpServer& server = m_parts->server;
    const auto threads = static_cast<std::size_t>(m_options.threads);
    server.new_task_queue = [threads] { return new httplib::ThreadPool(threads); };
    server.set_tcp_nodelay(true);
    server.set_keep_alive_max_count(kRequestsPerConnection);
    server.set_keep_alive_timeout(kIdleSeconds);
    server.set_read_timeout(kReadSeconds);
    server.set_write_timeout(kWriteSeconds);
    server.set_payload_max_length(kLargestRequest);
    // The library's default, SO_REUSEPORT, lets a second server share a busy port; binding must fail instead.
    server.set_socket_options([](socket_t socket) {
        const int yes = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    m_parts->routes.addTo(server);

    errno = 0;
    bool bound = false;
    if (m_options.port == 0) {
        m_parts->port = server.bind_to_any_port(m_options.host);
        bound = m_parts->port > 0;
    } else {
        m_parts->port = m_options.port;
        bound = server.bind_to_port(m_options.host, m_options.port);
    }
    if (!bound) {
        const std::string why = errno != 0 ? std::strerror(errno) : "the address cannot be used";
        throw StartError("cannot listen on " + m_options.host + ":" + std::to_string(m_options.port) + ": " +
                         why);
    }
    server.widenBacklog();
    m_parts->listener = std::thread([&server] { server.listen_after_bind(); });
    // Server::stop() has no effect before the accept loop runs.
    while (!server.is_running()) {
        std::this_thread::sleep_for(kStartPoll);
    }
}

void Service::stop() {
    if (!m_parts || !m_parts->listener.joinable()) {
        return;
    }
    m_parts->stop.stop();
    m_parts->server.stop();
    m_parts->listener.join();
}

bool Service::isRunning() const {
    return m_parts->server.is_running();
}

int Service::port() const {
    return m_parts->port;
}

std::string Service::url() const {
    const bool v6 = m_options.host.find(':') != std::string::npos;
    return "http://" + (v6 ? "[" + m_options.host + "]" : m_options.host) + ":" +
           std::to_string(m_parts->port);
}

std::string Service::answerTo(const std::string& question) const {
    return BuiltInAnswerer(m_parts->knowledge, Pace{}).textFor({{Role::User, question, 0}});
}

}  // namespace zentri::service
