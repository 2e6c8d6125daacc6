#include "sim/cad/core/Options.h"

#include <functional>

#include "sim/cad/core/Text.h"

namespace cad {

namespace {

constexpr int kLargestPort = 65535;
constexpr int kSmallestWidth = 480;
constexpr int kSmallestHeight = 320;
constexpr int kLargestSide = 16384;

struct Option {
    const char* name;
    /// Empty for a switch.
    const char* argument;
    const char* help;
    /// Stores the argument; false if it is invalid.
    std::function<bool(Options&, const std::string&)> take;
};

bool takePort(Options& options, const std::string& text) {
    options.controlPort = parseInteger(text);
    return options.controlPort && *options.controlPort >= 0 && *options.controlPort <= kLargestPort;
}

bool takeGeometry(Options& options, const std::string& text) {
    const size_t cross = text.find_first_of("xX");
    if (cross == std::string::npos) {
        return false;
    }
    const auto width = parseInteger(text.substr(0, cross));
    const auto height = parseInteger(text.substr(cross + 1));
    if (!width || !height) {
        return false;
    }
    options.width = *width;
    options.height = *height;
    return *width >= kSmallestWidth && *width <= kLargestSide && *height >= kSmallestHeight &&
           *height <= kLargestSide;
}

bool takeTheme(Options& options, const std::string& text) {
    if (text != "light" && text != "dark") {
        return false;
    }
    options.theme = text == "light" ? 1 : 0;
    return true;
}

template <std::string Options::*Field>
bool takeText(Options& options, const std::string& text) {
    options.*Field = text;
    return !text.empty();
}

template <bool Options::*Field>
bool takeSwitch(Options& options, const std::string& text) {
    (void)text;
    options.*Field = true;
    return true;
}

const std::vector<Option>& allOptions() {
    static const std::vector<Option> options = {
        {"--arx", "FILE", "load this module at startup; may be repeated",
         [](Options& o, const std::string& text) {
             o.modules.push_back(text);
             return !text.empty();
         }},
        {"--script", "FILE", "then run this .scr script", takeText<&Options::script>},
        {"--token", "T", "access token of the signed-in user (default: $ZR_ZENTRI_TOKEN)",
         takeText<&Options::token>},
        {"--no-sign-in", "", "reject sign-in requests instead of asking", takeSwitch<&Options::noSignIn>},
        {"--state", "FILE", "remember window, docking and theme in this file", takeText<&Options::stateFile>},
        {"--no-state", "", "neither restore nor save window, docking and theme",
         takeSwitch<&Options::noState>},
        {"--geometry", "WxH", "window size in pixels, at least 480x320", takeGeometry},
        {"--theme", "light|dark", "colour theme at startup (COLORTHEME 1 or 0)", takeTheme},
        {"--echo", "", "also print the command line's text to standard output", takeSwitch<&Options::echo>},
        {"--log", "FILE", "append the command line's text to this file", takeText<&Options::logFile>},
        {"--control", "PORT",
         "serve the control interface for tests on this loopback port, 0 for any free one", takePort},
        {"--help", "", "print this help", takeSwitch<&Options::help>},
        {"--version", "", "print the version", takeSwitch<&Options::version>},
    };
    return options;
}

const Option* findOption(const std::string& name) {
    for (const Option& option : allOptions()) {
        if (name == option.name) {
            return &option;
        }
    }
    return nullptr;
}

}  // namespace

std::optional<Options> parseOptions(const std::vector<std::string>& arguments, std::string& error) {
    Options options;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const size_t equals = startsWith(argument, "--") ? argument.find('=') : std::string::npos;
        const std::string name = argument.substr(0, equals);
        const Option* const option = findOption(name);
        if (option == nullptr) {
            error = (startsWith(argument, "-") ? "unknown option: " : "unexpected argument: ") + name;
            return std::nullopt;
        }
        const bool wantsValue = *option->argument != '\0';
        std::string value;
        if (equals != std::string::npos) {
            if (!wantsValue) {
                error = name + " takes no value";
                return std::nullopt;
            }
            value = argument.substr(equals + 1);
        } else if (wantsValue) {
            if (i + 1 == arguments.size()) {
                error = name + " needs a value: " + option->argument;
                return std::nullopt;
            }
            value = arguments[++i];
        }
        if (!option->take(options, value)) {
            error = "bad value for " + name + ": \"" + value + "\" (expected " + option->argument + ")";
            return std::nullopt;
        }
    }
    return options;
}

std::string optionsHelp() {
    constexpr size_t kHelpColumn = 24;
    std::string help =
        "Usage: zentri-host [options]\n\n"
        "A small CAD program that loads modules, for running and testing them.\n\nOptions:\n";
    for (const Option& option : allOptions()) {
        std::string line = std::string("  ") + option.name;
        if (*option.argument != '\0') {
            line += std::string(" ") + option.argument;
        }
        line.resize(std::max(line.size() + 2, kHelpColumn), ' ');
        help += line + option.help + "\n";
    }
    help +=
        "\nExit code: 0 after QUIT, closing the window, SIGINT or SIGTERM; 2 if an option is bad, a file\n"
        "cannot be opened, the control port cannot be bound, or there is no display.\n";
    return help;
}

}  // namespace cad
