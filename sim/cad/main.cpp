#include <iostream>
#include <string>
#include <vector>

#include "sim/cad/app/HostApp.h"
#include "sim/cad/core/Options.h"
#include "sim/cad/platform/Platform.h"

namespace {

constexpr int kUsageError = 2;

int fail(const std::string& reason) {
    std::cerr << "zentri-host: " << reason << std::endl;
    return kUsageError;
}

}  // namespace

int main(int argc, char** argv) {
    std::string error;
    const auto options = cad::parseOptions(cad::platform::arguments(argc, argv), error);
    if (!options) {
        return fail(error + " (--help lists the options)");
    }
    if (options->help) {
        std::cout << cad::optionsHelp();
        return 0;
    }
    if (options->version) {
        std::cout << "zentri-host " ZENTRI_VERSION << std::endl;
        return 0;
    }
    // MFC requires the CWinApp object to exist before AfxWinMain and until main returns.
    cad::HostApp app(*options);
    const int code = AfxWinMain(::GetModuleHandle(nullptr), nullptr, ::GetCommandLine(), SW_SHOW);
    return app.failure().empty() ? code : fail(app.failure());
}
