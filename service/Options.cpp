#include "service/Options.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <ostream>

#include "service/Text.h"
#include "service/UpstreamAnswerer.h"
#include "service/Version.h"

namespace zentri::service {

namespace {

constexpr int kLargestPort = 65535;
constexpr int kMostThreads = 1024;
constexpr int kLongestDelayMs = 60000;
constexpr int kLargestPiece = 100000;
constexpr int kMostSeedSessions = 20000;
constexpr int kLongestTimeoutSeconds = 3600;
constexpr const char* kKeyVariable = "ZENTRI_UPSTREAM_KEY";

constexpr const char* kDescription =
    "zentri-service: an AI service for drafting questions. It stores users, sessions and messages in\n"
    "SQLite and streams answers over HTTP, from its own knowledge base or an OpenAI-compatible server.";

/// Parses "host:port" or "[IPv6 address]:port". Throws OptionsError.
void readListenAddress(const std::string& text, Options& options) {
    const std::size_t colon = text.rfind(':');
    std::string host = text.substr(0, colon == std::string::npos ? 0 : colon);
    const std::string port = colon == std::string::npos ? std::string() : text.substr(colon + 1);
    if (host.size() > 2 && host.front() == '[' && host.back() == ']') {
        host = host.substr(1, host.size() - 2);
    } else if (host.find(':') != std::string::npos) {
        host.clear();
    }
    const bool digits =
        !port.empty() && port.size() <= 5 && port.find_first_not_of("0123456789") == std::string::npos;
    if (host.empty() || !digits || std::stoi(port) > kLargestPort) {
        throw OptionsError("--listen needs HOST:PORT, not '" + text + "'");
    }
    options.host = host;
    options.port = std::stoi(port);
}

/// A CLI11 validator: returns an error message, empty when the value is valid. An empty value is usually an
/// unset shell variable; SQLite, for one, would open a temporary database for an empty path.
std::string notEmpty(const std::string& text) {
    return text.empty() ? "must not be empty" : "";
}

std::string footer() {
    return "Faults (--fault CALL:KIND[=VALUE][,times=N][,skip=N]; CALL is chat, create, list, read or any;\n"
           "times=N: how many requests it applies to, 1 by default, 0 for all; skip=N: how many requests to\n"
           "its call pass first; =VALUE precedes both):\n" +
           faultHelp() +
           "\nEnvironment:\n"
           "  ZENTRI_UPSTREAM_KEY  access key for the --upstream server, sent as a bearer token\n"
           "\nExit code: 0 after a clean shutdown (SIGINT or SIGTERM), 2 when the service cannot start or\n"
           "its listening socket fails.\n";
}

}  // namespace

std::optional<Options> parseOptions(int argc, const char* const* argv, std::ostream& out) {
    Options options;
    std::string listen = options.host + ":" + std::to_string(options.port);
    std::vector<std::string> faults;

    CLI::App app{kDescription, "zentri-service"};
    app.footer(footer());
    app.set_version_flag("--version", std::string("zentri-service ") + kVersion);
    app.add_option("--listen", listen, "Address to listen on; port 0 picks a free port, which is printed")
        ->type_name("HOST:PORT")
        ->capture_default_str();
    app.add_option("--database", options.database, "SQLite database file, created if missing")
        ->type_name("FILE")
        ->check(notEmpty)
        ->capture_default_str();
    app.add_option("--knowledge", options.knowledgeDirectory,
                   "Directory of *.topics files to use instead of the built-in topics")
        ->type_name("DIR")
        ->check(notEmpty);
    CLI::Option* upstream = app.add_option("--upstream", options.upstreamUrl,
                                           "Forward questions to an OpenAI-compatible server (base URL)")
                                ->type_name("URL")
                                ->check(notEmpty);
    app.add_option("--upstream-model", options.upstreamModel,
                   "Model to request; by default the one the client names")
        ->type_name("NAME")
        ->check(notEmpty)
        ->needs(upstream);
    app.add_option("--upstream-timeout", options.upstreamTimeoutSeconds,
                   "Upstream timeout: seconds without any data")
        ->type_name("N")
        ->check(CLI::Range(1, kLongestTimeoutSeconds))
        ->capture_default_str();
    app.add_option("--upstream-ca", options.upstreamCaFile,
                   "CA certificates to trust for https instead of the system's (PEM)")
        ->type_name("FILE")
        ->check(CLI::ExistingFile)
        ->needs(upstream);
    app.add_option("--seed", options.seed,
                   "Seed a user's history once, from a JSON file or with the built-in 'demo'")
        ->type_name("FILE|demo")
        ->check(notEmpty);
    app.add_option("--seed-token", options.seedToken, "Token of the seeded user")
        ->type_name("TOKEN")
        ->check(notEmpty)
        ->capture_default_str();
    app.add_option("--seed-sessions", options.seedSessions,
                   "Sessions that 'demo' generates, over the past two years")
        ->type_name("N")
        ->check(CLI::Range(1, kMostSeedSessions))
        ->capture_default_str();
    app.add_option("--delay", options.delayMs,
                   "Pause between the pieces of a built-in answer, in milliseconds")
        ->type_name("MS")
        ->check(CLI::Range(0, kLongestDelayMs))
        ->capture_default_str();
    app.add_option("--piece", options.piece, "Characters per piece of a built-in answer")
        ->type_name("N")
        ->check(CLI::Range(1, kLargestPiece))
        ->capture_default_str();
    app.add_option("--fault", faults, "Inject a fault, for testing clients (repeatable; see below)")
        ->type_name("FAULT")
        ->allow_extra_args(false);
    app.add_flag("--allow-faults", options.allowFaults,
                 "Accept faults at run time: POST, GET, DELETE /test/faults");
    app.add_option("--threads", options.threads, "Requests served concurrently")
        ->type_name("N")
        ->check(CLI::Range(1, kMostThreads))
        ->capture_default_str();
    app.add_option("--ask", options.ask, "Print the built-in answer to a question and exit")
        ->type_name("QUESTION");
    app.add_flag("--verbose", options.verbose, "Log each request to standard error");

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        out << app.help();
        return std::nullopt;
    } catch (const CLI::CallForVersion& version) {
        out << version.what() << '\n';
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        throw OptionsError(oneLine(error.what()));
    }

    readListenAddress(listen, options);
    try {
        for (const std::string& fault : faults) {
            options.faults.push_back(parseFault(fault));
        }
        if (!options.upstreamUrl.empty()) {
            upstreamFromUrl(options.upstreamUrl);
        }
    } catch (const std::invalid_argument& error) {
        throw OptionsError(error.what());
    }
    if (const char* key = std::getenv(kKeyVariable)) {
        options.upstreamKey = key;
    }
    return options;
}

}  // namespace zentri::service
