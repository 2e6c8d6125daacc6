#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "sim/host/control/ControlServer.h"
#include "sim/host/control/KeyTyper.h"

namespace cad {

class HostApp;

/// The interface by which a test or a demo drives the program from outside: JSON objects, one in a line each
/// way (README.md lists them). Modules never see it. UI thread.
class ControlInterface {
public:
    using Reply = std::function<void(const nlohmann::json&)>;

    /// `wake` must bring about a call of serve() on the UI thread; it is called on any thread.
    ControlInterface(HostApp& app, std::function<void()> wake);
    ~ControlInterface();

    bool listen(int port, std::string& error) { return m_server.listen(port, error); }
    int port() const { return m_server.port(); }

    /// Answers what waits. Nested loops get here too.
    void serve();
    /// The program's own loop has worked everything off, for now.
    void loopCameRound();

private:
    void handle(const std::shared_ptr<ControlRequest>& request);
    void dispatch(const std::string& command, const nlohmann::json& arguments, const Reply& reply);
    void typeText(const nlohmann::json& arguments, const Reply& reply);
    void typeKey(const nlohmann::json& arguments, const Reply& reply);
    void arx(const nlohmann::json& arguments, const Reply& reply);
    /// Answers when the input that was just made has come through the loop.
    void replyLater(const nlohmann::json& result, const Reply& reply);

    struct Delayed {
        int turnsLeft;
        std::function<void()> call;
    };

    HostApp& m_app;
    std::function<void()> m_wake;
    ControlServer m_server;
    KeyTyper m_typer;
    std::vector<Reply> m_idleWaiters;
    std::vector<Delayed> m_delayed;
};

}  // namespace cad
