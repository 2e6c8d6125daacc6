#pragma once

#include <chrono>
#include <iosfwd>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "service/FaultPlan.h"

namespace zentri::service {

/// Settings from the command line and the environment; the member initialisers are the defaults.
struct Options {
    std::string host = "127.0.0.1";
    int port = 8090;  ///< 0: any free port.
    std::string database = "zentri-service.sqlite";
    std::string knowledgeDirectory;  ///< Empty: the built-in topics.

    std::string upstreamUrl;     ///< Empty: answers come from the knowledge base.
    std::string upstreamModel;   ///< Empty: the model the client names.
    std::string upstreamKey;     ///< From the environment, so that it does not appear in the process list.
    std::string upstreamCaFile;  ///< Empty: the system's certificates.
    int upstreamTimeoutSeconds = 60;

    std::string seed;  ///< A file, "demo", or empty for none.
    std::string seedToken = "demo";
    int seedSessions = 420;

    int delayMs = 15;  ///< Pause between the pieces of a built-in answer.
    int piece = 4;     ///< Code points per piece of a built-in answer.
    std::vector<Fault> faults;
    bool allowFaults = false;
    int threads = 64;  ///< Requests served concurrently; an idle connection counts too.
    bool verbose = false;
    std::optional<std::string> ask;  ///< Print the answer to this question and exit.
};

/// An invalid command line; what() is one line for the user.
class OptionsError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Parses the command line and reads the environment. Returns nullopt when --help or --version was given,
/// after printing its text to `out`. Throws OptionsError.
std::optional<Options> parseOptions(int argc, const char* const* argv, std::ostream& out);

}  // namespace zentri::service
