#include "sim/cad/core/Command.h"

#include <utility>

#include "sim/cad/core/Editor.h"

namespace cad {

std::vector<Entity> Command::preview(Point cursor) const {
    (void)cursor;
    return {};
}

const std::set<int>& Command::selection() const {
    static const std::set<int> none;
    return none;
}

void Command::answer(const Input& input) {
    // Copied, because the handler usually asks the next question, which replaces m_handler while it runs.
    const Handler handler = m_handler;
    handler(input);
}

void Command::ask(Prompt prompt, Handler handler) {
    m_prompt = std::move(prompt);
    m_handler = std::move(handler);
}

void Command::askAgain(const std::string& error) {
    editor().commandLine().addLine(error);
}

}  // namespace cad
