#pragma once

#include <nlohmann/json_fwd.hpp>
#include <stdexcept>
#include <string>

namespace cad {

class HostApp;

/// A request that cannot be carried out; what() is the error text of the reply.
class ControlError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Runs one of the commands that ControlInterface does not handle itself, and returns its reply; the reply
/// `{"afterInput":true}` must be delayed until the synthesized input has been processed. Null if there is no
/// such command. Throws ControlError or a JSON exception for bad arguments. UI thread.
nlohmann::json runControlCommand(HostApp& app, const std::string& command, const nlohmann::json& arguments);

}  // namespace cad
