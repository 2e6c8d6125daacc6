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
    "zentri-service: an AI service for drafting questions. It keeps users, sessions and messages in a "
    "database and\n"
    "streams answers over HTTP, from its own knowledge base or from another chat server.";

/// "host:port" or "[v6 address]:port".
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

/// An empty text is most often a variable of the shell's that is not set; SQLite, say, would take it for a
/// database that is thrown away at the end.
std::string notEmpty(const std::string& text) {
    return text.empty() ? "must not be empty" : "";
}

std::string footer() {
    return "Faults (--fault CALL:KIND[=VALUE][,times=N][,skip=N]; CALL is chat, create, list, read or any;\n"
           "times=0 strikes every request; the value stands before times and skip):\n" +
           faultHelp() +
           "\nEnvironment:\n"
           "  ZENTRI_UPSTREAM_KEY  access key for the --upstream server\n"
           "\nExit code: 0 after a clean stop (SIGINT or SIGTERM), 2 when the service cannot start.\n";
}

}  // namespace

std::optional<Options> parseOptions(int argc, const char* const* argv, std::ostream& out) {
    Options options;
    std::string listen = options.host + ":" + std::to_string(options.port);
    std::vector<std::string> faults;

    CLI::App app{kDescription, "zentri-service"};
    app.footer(footer());
    app.set_version_flag("--version", std::string("zentri-service ") + kVersion);
    app.add_option("--listen", listen, "Address to listen on; port 0 takes a free one, which is printed")
        ->type_name("HOST:PORT")
        ->capture_default_str();
    app.add_option("--database", options.database, "Database file, made when missing")
        ->type_name("FILE")
        ->check(notEmpty)
        ->capture_default_str();
    app.add_option("--knowledge", options.knowledgeDirectory,
                   "Folder of *.topics files in place of the built-in ones")
        ->type_name("DIR")
        ->check(notEmpty);
    CLI::Option* upstream = app.add_option("--upstream", options.upstreamUrl,
                                           "Have an OpenAI-compatible server answer (base URL)")
                                ->type_name("URL")
                                ->check(notEmpty);
    app.add_option("--upstream-model", options.upstreamModel,
                   "Model to ask for; else the one the client names")
        ->type_name("NAME")
        ->check(notEmpty)
        ->needs(upstream);
    app.add_option("--upstream-timeout", options.upstreamTimeoutSeconds,
                   "Longest silence of that server, in seconds")
        ->type_name("N")
        ->check(CLI::Range(1, kLongestTimeoutSeconds))
        ->capture_default_str();
    app.add_option("--upstream-ca", options.upstreamCaFile, "Certificates to trust for https (PEM)")
        ->type_name("FILE")
        ->check(CLI::ExistingFile)
        ->needs(upstream);
    app.add_option("--seed", options.seed,
                   "Fill a user's history once, from a JSON file or with the built-in 'demo'")
        ->type_name("FILE|demo")
        ->check(notEmpty);
    app.add_option("--seed-token", options.seedToken, "Token of that user")
        ->type_name("TOKEN")
        ->check(notEmpty)
        ->capture_default_str();
    app.add_option("--seed-sessions", options.seedSessions,
                   "Sessions that 'demo' makes, over two years up to now")
        ->type_name("N")
        ->check(CLI::Range(1, kMostSeedSessions))
        ->capture_default_str();
    app.add_option("--delay", options.delayMs, "Milliseconds between the pieces of a built-in answer")
        ->type_name("MS")
        ->check(CLI::Range(0, kLongestDelayMs))
        ->capture_default_str();
    app.add_option("--piece", options.piece, "Characters per piece of a built-in answer")
        ->type_name("N")
        ->check(CLI::Range(1, kLargestPiece))
        ->capture_default_str();
    app.add_option("--fault", faults,
                   "Make something go wrong, for testing clients (may be repeated; see below)")
        ->type_name("FAULT")
        ->allow_extra_args(false);
    app.add_flag("--allow-faults", options.allowFaults,
                 "Take faults at run time: POST, GET, DELETE /test/faults");
    app.add_option("--threads", options.threads, "Requests served at the same time")
        ->type_name("N")
        ->check(CLI::Range(1, kMostThreads))
        ->capture_default_str();
    app.add_option("--ask", options.ask, "Print the built-in answer to a question and leave")
        ->type_name("QUESTION");
    app.add_flag("--verbose", options.verbose, "A line on standard error for each request");

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
