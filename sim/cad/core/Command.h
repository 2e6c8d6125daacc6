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

/// A built-in command in progress: it asks, is called back with the answer, asks again or finishes. It never
/// waits, so the program's one loop goes on between the answers.
class Command {
public:
    Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    virtual ~Command() = default;

    /// Must ask or finish.
    virtual void start() = 0;
    /// What the answer at the crosshair would draw.
    virtual std::vector<Entity> preview(Point cursor) const;
    /// Ids of the entities chosen so far.
    virtual const std::set<int>& selection() const;

    void attach(Editor& editor) { m_editor = &editor; }
    const std::optional<Prompt>& prompt() const { return m_prompt; }
    bool isFinished() const { return m_finished; }
    void answer(const Input& input);

protected:
    using Handler = std::function<void(const Input&)>;

    Editor& editor() const { return *m_editor; }
    void ask(Prompt prompt, Handler handler);
    /// Says what was wrong and asks the same again.
    void askAgain(const std::string& error);
    void finish() { m_finished = true; }

private:
    Editor* m_editor = nullptr;
    std::optional<Prompt> m_prompt;
    Handler m_handler;
    bool m_finished = false;
};

}  // namespace cad
