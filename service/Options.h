#pragma once

#include <chrono>
#include <iosfwd>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "service/FaultPlan.h"

namespace zentri::service {

/// What the command line asks for; the member initialisers are the defaults.
struct Options {
    std::string host = "127.0.0.1";
    int port = 8090;  ///< 0: any free one.
    std::string database = "zentri-service.sqlite";
    std::string knowledgeDirectory;  ///< Empty: the topics built into the program.

    std::string upstreamUrl;  ///< Empty: answers come from the knowledge base.
    std::string upstreamModel;
    std::string upstreamKey;  ///< From the environment, so that it shows in no process list.
    std::string upstreamCaFile;
    int upstreamTimeoutSeconds = 60;

    std::string seed;  ///< A file, "demo", or empty.
    std::string seedToken = "demo";
    int seedSessions = 420;

    int delayMs = 15;
    int piece = 4;
    std::vector<Fault> faults;
    bool allowFaults = false;
    int threads = 64;
    bool verbose = false;
    std::optional<std::string> ask;  ///< Answer this on standard output and leave.
};

/// A command line that cannot be used; the text is one line for the user.
class OptionsError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads the command line and the environment. Returns nothing when --help or --version was asked for and has
/// been printed to `out`. Throws OptionsError.
std::optional<Options> parseOptions(int argc, const char* const* argv, std::ostream& out);

}  // namespace zentri::service
