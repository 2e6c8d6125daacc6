#include <csignal>
#include <ctime>
#include <exception>
#include <iostream>

#include "service/Log.h"
#include "service/Options.h"
#include "service/Service.h"

namespace {

constexpr int kCannotStart = 2;
constexpr long kLookNanoseconds = 200'000'000;

/// Waits for SIGINT or SIGTERM, which all threads block. False when the listening socket failed instead.
bool waitForSignal(const zentri::service::Service& service, const sigset_t& signals) {
    const timespec look{0, kLookNanoseconds};
    while (service.isRunning()) {
        if (sigtimedwait(&signals, nullptr, &look) > 0) {
            return true;
        }
    }
    return false;
}

int run(int argc, char** argv) {
    using namespace zentri::service;
    std::optional<Options> options = parseOptions(argc, argv, std::cout);
    if (!options) {
        return 0;
    }
    if (options->ask) {
        options->database = ":memory:";
        std::cout << Service(*options).answerTo(*options->ask) << std::endl;
        return 0;
    }

    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    // Block the signals before the first thread starts: all threads inherit the mask, and only sigtimedwait()
    // receives them.
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);

    Service service(*options);
    service.start();
    std::cout << "zentri-service listening on " << service.url() << std::endl;
    const bool asked = waitForSignal(service, signals);
    service.stop();
    if (!asked) {
        throw StartError("the listening socket failed");
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        zentri::service::logLine(error.what());
        return kCannotStart;
    }
}
