#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "sim/cad/control/ControlServer.h"
#include "sim/cad/control/KeyTyper.h"

namespace cad {

class HostApp;

/// The interface by which a test or a demo drives the program from outside: JSON objects, one in a line each
/// way (README.md lists them). Modules never see it. UI thread.
class ControlInterface {
public:
    using Reply = std::function<void(const nlohmann::json&)>;

    /// `wake` must bring about a call of serve() on the UI thread; it is called on any thread. `onTypingTurn`
    /// must bring about one call of typingTurn() by way of the message queue.
    ControlInterface(HostApp& app, std::function<void()> wake, std::function<void()> onTypingTurn);
    ~ControlInterface();

    bool listen(int port, std::string& error) { return m_server.listen(port, error); }
    int port() const { return m_server.port(); }

    /// Answers what waits. Nested loops get here too.
    void serve();
    void typingTurn();
    /// The program's own loop has worked everything off, for now.
    void loopCameRound();
    /// A timer's message came, and so the real input before it has been worked off.
    void inputSettled();

private:
    void handle(const std::shared_ptr<ControlRequest>& request);
    void dispatch(const std::string& command, const nlohmann::json& arguments, const Reply& reply);
    void typeText(const nlohmann::json& arguments, const Reply& reply);
    void typeKey(const nlohmann::json& arguments, const Reply& reply);
    void arx(const nlohmann::json& arguments, const Reply& reply);
    /// Answers when the real input that was just made has come back from the system and through the loop.
    void replyAfterInput(const Reply& reply);

    HostApp& m_app;
    std::function<void()> m_wake;
    ControlServer m_server;
    KeyTyper m_typer;
    std::vector<Reply> m_idleWaiters;
    std::vector<Reply> m_inputWaiters;
};

}  // namespace cad
