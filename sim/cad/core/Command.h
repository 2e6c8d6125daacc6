#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "sim/cad/core/Entity.h"
#include "sim/cad/core/Prompt.h"

namespace cad {

class Editor;

/// A built-in command in progress. It asks, is called back with the answer, and asks again or finishes. It
/// never blocks, so the message loop keeps running between answers.
class Command {
public:
    Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    virtual ~Command() = default;

    /// Must call ask() or finish().
    virtual void start() = 0;
    /// What the command would draw if the crosshair's position were the answer.
    virtual std::vector<Entity> preview(Point cursor) const;
    /// Ids of the entities selected so far.
    virtual const std::set<int>& selection() const;

    void attach(Editor& editor) { m_editor = &editor; }
    const std::optional<Prompt>& prompt() const { return m_prompt; }
    bool isFinished() const { return m_finished; }
    void answer(const Input& input);

protected:
    using Handler = std::function<void(const Input&)>;

    Editor& editor() const { return *m_editor; }
    void ask(Prompt prompt, Handler handler);
    /// Prints the error; the current question stays active.
    void askAgain(const std::string& error);
    void finish() { m_finished = true; }

private:
    Editor* m_editor = nullptr;
    std::optional<Prompt> m_prompt;
    Handler m_handler;
    bool m_finished = false;
};

}  // namespace cad
