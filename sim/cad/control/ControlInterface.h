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

/// Lets a test or a demo drive the program from another process: one JSON object per line in each direction
/// (see README.md). Not visible to modules. UI thread.
class ControlInterface {
public:
    using Reply = std::function<void(const nlohmann::json&)>;

    /// `wake` must cause a call of serve() on the UI thread; it is called on any thread. `onTypingTurn` must
    /// cause one call of typingTurn() through the message queue.
    ControlInterface(HostApp& app, std::function<void()> wake, std::function<void()> onTypingTurn);
    ~ControlInterface();

    bool listen(int port, std::string& error) { return m_server.listen(port, error); }
    int port() const { return m_server.port(); }

    /// Handles one pending request, if any. Also called from nested message loops.
    void serve();
    /// Performs the next step of posting typed text.
    void typingTurn();
    /// Called after each pass of the program's own message loop; answers `idle` requests when all is done.
    void loopCameRound();
    /// Called on the input timer's WM_TIMER: the real input synthesized before it has been processed.
    void inputSettled();

private:
    void handle(const std::shared_ptr<ControlRequest>& request);
    void dispatch(const std::string& command, const nlohmann::json& arguments, const Reply& reply);
    void typeText(const nlohmann::json& arguments, const Reply& reply);
    void typeKey(const nlohmann::json& arguments, const Reply& reply);
    void arx(const nlohmann::json& arguments, const Reply& reply);
    /// Replies once the system has delivered the input just synthesized and the loop has processed it.
    void replyAfterInput(const Reply& reply);

    HostApp& m_app;
    std::function<void()> m_wake;
    ControlServer m_server;
    KeyTyper m_typer;
    std::vector<Reply> m_idleWaiters;
    std::vector<Reply> m_inputWaiters;
};

}  // namespace cad
