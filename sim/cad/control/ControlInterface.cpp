#include "sim/cad/control/ControlInterface.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "sim/cad/app/HostApp.h"
#include "sim/cad/app/MainFrame.h"
#include "sim/cad/control/ControlCommands.h"
#include "sim/cad/platform/Platform.h"

namespace cad {

namespace {

using nlohmann::json;

const json kOk = json::object();

json failure(const std::string& reason) {
    return {{"ok", false}, {"error", reason}};
}

std::string dump(const json& value) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace

ControlInterface::ControlInterface(HostApp& app, std::function<void()> wake,
                                   std::function<void()> onTypingTurn)
    : m_app(app), m_wake(std::move(wake)), m_server(m_wake), m_typer(std::move(onTypingTurn)) {}

ControlInterface::~ControlInterface() = default;

void ControlInterface::serve() {
    if (const auto request = m_server.take()) {
        handle(request);
        m_wake();
    }
}

void ControlInterface::typingTurn() {
    m_typer.turn();
}

void ControlInterface::loopCameRound() {
    if (m_idleWaiters.empty() || !m_app.editor().isQuiescent() || m_app.editor().hasInput()) {
        return;
    }
    const std::vector<Reply> waiters = std::move(m_idleWaiters);
    m_idleWaiters.clear();
    for (const Reply& reply : waiters) {
        reply(kOk);
    }
}

void ControlInterface::handle(const std::shared_ptr<ControlRequest>& request) {
    const json arguments = json::parse(request->line(), nullptr, false);
    json id;
    if (arguments.is_object() && arguments.contains("id")) {
        id = arguments["id"];
    }
    const Reply reply = [request, id](const json& result) {
        json answer = result;
        if (!answer.contains("ok")) {
            answer["ok"] = true;
        }
        if (!id.is_null()) {
            answer["id"] = id;
        }
        request->answer(dump(answer));
    };
    if (!arguments.is_object() || !arguments.contains("cmd") || !arguments["cmd"].is_string()) {
        reply(failure("a request must be a JSON object with a \"cmd\" string"));
        return;
    }
    try {
        dispatch(arguments["cmd"].get<std::string>(), arguments, reply);
    } catch (const std::exception& error) {
        reply(failure(error.what()));
    }
}

void ControlInterface::dispatch(const std::string& command, const json& arguments, const Reply& reply) {
    if (command == "typeText") {
        typeText(arguments, reply);
    } else if (command == "key") {
        typeKey(arguments, reply);
    } else if (command == "arx") {
        arx(arguments, reply);
    } else if (command == "idle") {
        m_idleWaiters.push_back(reply);
    } else if (command == "quit") {
        reply(kOk);
        m_app.requestQuit();
    } else {
        const json result = runControlCommand(m_app, command, arguments);
        if (result.is_null()) {
            reply(failure("unknown command: " + command));
        } else if (result.value("afterInput", false)) {
            replyAfterInput(reply);
        } else {
            reply(result);
        }
    }
}

void ControlInterface::typeText(const json& arguments, const Reply& reply) {
    m_typer.typeText(arguments.at("text").get<std::string>(), [reply](bool posted) {
        reply(posted ? kOk : failure("no window of the program has the focus"));
    });
}

void ControlInterface::typeKey(const json& arguments, const Reply& reply) {
    const auto name = arguments.at("key").get<std::string>();
    const int key = KeyTyper::keyOf(name);
    if (key == 0) {
        throw ControlError("unknown key: " + name);
    }
    const bool shift = arguments.value("shift", false);
    const bool control = arguments.value("ctrl", false);
    const bool alt = arguments.value("alt", false);
    if (arguments.value("real", false)) {
        if (!platform::strokeKey(key, shift, control, alt)) {
            throw ControlError("the system rejected the key");
        }
        replyAfterInput(reply);
        return;
    }
    m_typer.typeKey(key, shift, control, alt, [reply](bool posted) {
        reply(posted ? kOk : failure("no window of the program has the focus"));
    });
}

void ControlInterface::arx(const json& arguments, const Reply& reply) {
    // A module must not be loaded or unloaded while its code is on the stack, as it may be in a nested loop.
    m_app.runAtIdle([this, arguments, reply] {
        json result = kOk;
        if (arguments.contains("load")) {
            result["ok"] = m_app.loadModule(arguments["load"].get<std::string>());
        } else if (arguments.contains("unload")) {
            result["ok"] = m_app.unloadModule(arguments["unload"].get<std::string>());
        }
        if (result.contains("ok") && !result["ok"].get<bool>()) {
            result["error"] = "the module could not be loaded or unloaded";
        }
        result["modules"] = m_app.loadedModules();
        reply(result);
    });
}

void ControlInterface::replyAfterInput(const Reply& reply) {
    m_inputWaiters.push_back(reply);
    m_app.frame()->startInputTimer();
}

void ControlInterface::inputSettled() {
    const std::vector<Reply> waiters = std::move(m_inputWaiters);
    m_inputWaiters.clear();
    for (const Reply& reply : waiters) {
        reply(kOk);
    }
}

}  // namespace cad
