#pragma once

#include <nlohmann/json_fwd.hpp>
#include <stdexcept>
#include <string>

namespace cad {

class HostApp;

/// What a client asked for that cannot be done; the text is its answer.
class ControlError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The control commands that are answered at once. Null when there is none of that name; throws ControlError
/// or a JSON exception for bad arguments.
nlohmann::json runControlCommand(HostApp& app, const std::string& command, const nlohmann::json& arguments);

}  // namespace cad
