#include "sim/cad/core/Editor.h"

#include <algorithm>
#include <exception>

#include "sim/cad/core/Text.h"

namespace cad {

namespace {

constexpr char32_t kCtrlC = 3;
constexpr char32_t kEscape = 27;
constexpr const char* kCommandPrompt = "命令: ";
constexpr const char* kCancelled = "*取消*";

/// Takes the full stop from a typed command, before or behind the underscore. It selects the built-in command
/// where a module has one of the same name.
bool takeFullStop(std::string& name) {
    const std::size_t place = startsWith(name, "_") ? 1 : 0;
    if (name.compare(place, 1, ".") != 0) {
        return false;
    }
    name.erase(place, 1);
    return true;
}

class FlagGuard {
public:
    explicit FlagGuard(bool& flag) : m_flag(flag) { m_flag = true; }
    FlagGuard(const FlagGuard&) = delete;
    FlagGuard& operator=(const FlagGuard&) = delete;
    ~FlagGuard() { m_flag = false; }

private:
    bool& m_flag;
};

}  // namespace

Editor::Editor(EditorServices& services) : m_services(services) {
    m_variables.setListener(this);
    m_variables.follow("CMDACTIVE", [this] { return VariableValue(isQuiescent() ? 0 : 1); });
    m_variables.follow("CMDNAMES", [this] { return VariableValue(activeCommandNames()); });
    m_variables.follow("VIEWCTR", [this] { return VariableValue(m_viewport.center()); });
    m_variables.follow("VIEWSIZE", [this] { return VariableValue(m_viewport.visible().height()); });
    updatePrompt();
}

Editor::~Editor() = default;

void Editor::addListener(EditorListener* listener) {
    m_listeners.push_back(listener);
}

void Editor::removeListener(EditorListener* listener) {
    m_listeners.erase(std::remove(m_listeners.begin(), m_listeners.end(), listener), m_listeners.end());
}

template <typename Call>
void Editor::tell(Call call) {
    // A listener may remove itself or others while it is being notified.
    const std::vector<EditorListener*> told = m_listeners;
    for (EditorListener* const listener : told) {
        if (std::find(m_listeners.begin(), m_listeners.end(), listener) != m_listeners.end()) {
            call(*listener);
        }
    }
}

void Editor::sysVarWillChange(const std::string& name) {
    tell([&](EditorListener& listener) { listener.sysVarWillChange(name); });
}

void Editor::sysVarChanged(const std::string& name, bool success) {
    tell([&](EditorListener& listener) { listener.sysVarChanged(name, success); });
}

std::vector<Editor::Item> Editor::itemsOf(const std::string& text, bool echo) {
    std::vector<Item> items;
    char32_t previous = 0;
    for (const char32_t c : fromUtf8(text)) {
        Item item{Item::Character, c, EditKey::Enter, {}, echo};
        if (c == kCtrlC || c == kEscape) {
            item.kind = Item::Cancel;
        } else if (c == '\n' || c == '\r') {
            item.kind = Item::Key;
        }
        if (!(c == '\n' && previous == '\r')) {
            items.push_back(item);
        }
        previous = c;
    }
    return items;
}

void Editor::typeCharacter(char32_t character) {
    sendString(toUtf8(character));
}

void Editor::typeKey(EditKey key) {
    m_queue.push_back({Item::Key, 0, key, {}, true});
    m_services.wake();
}

void Editor::pick(Point point) {
    m_queue.push_back({Item::Pick, 0, EditKey::Enter, point, true});
    m_services.wake();
}

void Editor::sendString(const std::string& text, bool echo) {
    const std::vector<Item> items = itemsOf(text, echo);
    m_queue.insert(m_queue.end(), items.begin(), items.end());
    m_services.wake();
}

void Editor::sendFirst(const std::vector<std::string>& texts) {
    std::vector<Item> items;
    for (const std::string& text : texts) {
        const std::vector<Item> more = itemsOf(text, true);
        items.insert(items.end(), more.begin(), more.end());
    }
    m_queue.insert(m_queue.begin(), items.begin(), items.end());
    m_services.wake();
}

void Editor::escape() {
    m_queue.clear();
    m_paused = false;
    m_queue.push_back({Item::Cancel, 0, EditKey::Enter, {}, true});
    m_services.wake();
}

void Editor::resume() {
    m_paused = false;
    m_services.wake();
}

bool Editor::processInput(std::chrono::steady_clock::duration longest) {
    if (m_processing || m_paused || m_queue.empty()) {
        return false;
    }
    const FlagGuard guard(m_processing);
    const auto end = std::chrono::steady_clock::now() + longest;
    do {
        const Item item = m_queue.front();
        m_queue.pop_front();
        process(item);
    } while (!m_queue.empty() && !m_paused && std::chrono::steady_clock::now() < end);
    return true;
}

void Editor::process(const Item& item) {
    m_echo = item.echo;
    switch (item.kind) {
        case Item::Cancel:
            cancel();
            break;
        case Item::Key:
            processKey(item.key);
            break;
        case Item::Pick:
            processPick(item.point);
            break;
        case Item::Character: {
            const Prompt* const prompt = activePrompt();
            const bool blankEnters = prompt == nullptr || !prompt->takes(Prompt::Lines);
            if (item.character == ' ' && blankEnters) {
                submit();
            } else if (item.character >= ' ' && item.character != 0x7F) {
                m_commandLine.insert(item.character);
            }
            break;
        }
    }
}

void Editor::processKey(EditKey key) {
    switch (key) {
        case EditKey::Enter:
            submit();
            break;
        case EditKey::Backspace:
            m_commandLine.backspace();
            break;
        case EditKey::Delete:
            m_commandLine.deleteForward();
            break;
        case EditKey::Left:
            m_commandLine.moveCaret(-1);
            break;
        case EditKey::Right:
            m_commandLine.moveCaret(1);
            break;
        case EditKey::Home:
            m_commandLine.caretToStart();
            break;
        case EditKey::End:
            m_commandLine.caretToEnd();
            break;
        case EditKey::Up:
            m_commandLine.recallPrevious();
            break;
        case EditKey::Down:
            m_commandLine.recallNext();
            break;
    }
}

void Editor::processPick(Point point) {
    const Prompt* const prompt = activePrompt();
    if (prompt == nullptr) {
        return;
    }
    setCursor(point);
    Input input;
    if (prompt->takes(Prompt::Points)) {
        input.kind = Input::PointGiven;
        input.point = m_cursor;
    } else if (prompt->takes(Prompt::Numbers) && prompt->base) {
        input.kind = Input::Number;
        input.number = distance(*prompt->base, m_cursor);
    } else {
        return;
    }
    m_commandLine.addLine(prompt->text);
    give(input);
}

void Editor::submit() {
    const std::string typed = m_commandLine.takeInput();
    const Prompt* const prompt = activePrompt();
    if (prompt == nullptr) {
        submitCommand(trimmed(typed));
        return;
    }
    const std::string answer = trimmed(typed);
    if (m_echo) {
        m_commandLine.addLine(prompt->text + answer);
        m_commandLine.remember(answer);
    }
    if (const auto transparent = transparentCommand(answer)) {
        startBuiltIn(*transparent->first, transparent->second);
        return;
    }
    std::string error;
    const auto input = parseInput(*prompt, answer, {m_variables.point("LASTPOINT"), m_cursor}, error);
    if (!input) {
        m_commandLine.addLine(error);
        return;
    }
    give(*input);
}

std::optional<std::pair<const BuiltInCommand*, std::string>> Editor::transparentCommand(
    const std::string& typed) const {
    if (!startsWith(typed, "'")) {
        return std::nullopt;
    }
    const std::string name = typed.substr(1);
    const BuiltInCommand* const command = findBuiltIn(name);
    if (command == nullptr || !command->transparent) {
        return std::nullopt;
    }
    return std::make_pair(command, name);
}

void Editor::cancel() {
    const std::string typed = m_commandLine.takeInput();
    if (m_commands.empty()) {
        if (m_echo) {
            m_commandLine.addLine(kCommandPrompt + typed + kCancelled);
        }
        return;
    }
    m_commandLine.addLine(activePrompt()->text + typed + kCancelled);
    finishTop(true);
}

void Editor::submitCommand(const std::string& typed) {
    const std::string name = typed.empty() ? m_repeat : typed;
    if (name.empty()) {
        return;
    }
    std::string bare = startsWith(name, "'") ? name.substr(1) : name;
    const bool builtInOnly = takeFullStop(bare);
    if (m_external != nullptr && !builtInOnly) {
        if (const auto command = m_external->find(bare)) {
            runExternal(*command, name);
            return;
        }
    }
    echoCommand(name);
    if (const BuiltInCommand* const command = findBuiltIn(bare)) {
        startBuiltIn(*command, name);
        return;
    }
    if (const SystemVariable* const variable = m_variables.find(bare)) {
        const std::string variableName = variable->name;
        startBuiltIn(*findBuiltIn("SETVAR"), name);
        Input input;
        input.kind = Input::Text;
        input.text = variableName;
        give(input);
        return;
    }
    m_commandLine.addLine("未知命令“" + upper(name) + "”。按 F1 查看帮助。");
}

void Editor::echoCommand(const std::string& typed) {
    if (m_echo) {
        m_commandLine.addLine(kCommandPrompt + typed);
        m_commandLine.remember(typed);
    }
}

void Editor::startBuiltIn(const BuiltInCommand& command, const std::string& typed) {
    if (m_commands.empty()) {
        m_repeat = upper(typed);
        m_drawing.beginGroup(command.name);
    }
    m_commands.push_back({command.name, command.make()});
    m_commands.back().command->attach(*this);
    tell([&](EditorListener& listener) { listener.commandWillStart(command.name); });
    m_commands.back().command->start();
    step();
}

void Editor::runExternal(const ExternalCommand& command, const std::string& typed) {
    if (!command.noHistory) {
        echoCommand(typed);
        m_repeat = command.globalName;
    }
    const ExternalCommand running = command;
    bool failed = false;
    {
        const FlagGuard guard(m_runningExternal);
        m_commandLine.setPrompt("");
        tell([&](EditorListener& listener) { listener.commandWillStart(running.globalName); });
        try {
            running.run();
        } catch (const std::exception& error) {
            failed = true;
            m_commandLine.addLine("命令 " + running.globalName + " 失败: " + error.what());
        } catch (...) {
            failed = true;
            m_commandLine.addLine("命令 " + running.globalName + " 失败。");
        }
    }
    updatePrompt();
    tell([&](EditorListener& listener) {
        failed ? listener.commandFailed(running.globalName) : listener.commandEnded(running.globalName);
    });
}

void Editor::give(const Input& input) {
    if (input.kind == Input::PointGiven) {
        setLastPoint(input.point);
    }
    m_commands.back().command->answer(input);
    step();
}

void Editor::step() {
    if (m_commands.back().command->isFinished()) {
        finishTop(false);
    } else {
        updatePrompt();
    }
}

void Editor::finishTop(bool cancelled) {
    const std::string name = m_commands.back().name;
    m_commands.pop_back();
    if (m_commands.empty()) {
        m_drawing.endGroup();
    } else {
        m_commandLine.addLine("正在恢复执行 " + m_commands.back().name + " 命令。");
    }
    updatePrompt();
    tell([&](EditorListener& listener) {
        cancelled ? listener.commandCancelled(name) : listener.commandEnded(name);
    });
}

void Editor::updatePrompt() {
    const Prompt* const prompt = activePrompt();
    m_commandLine.setPrompt(prompt == nullptr ? kCommandPrompt : m_commands.back().name + " " + prompt->text);
}

const Prompt* Editor::activePrompt() const {
    if (m_commands.empty() || !m_commands.back().command->prompt()) {
        return nullptr;
    }
    return &*m_commands.back().command->prompt();
}

std::string Editor::activeCommandNames() const {
    std::string names;
    for (const Running& running : m_commands) {
        names += (names.empty() ? "" : "'") + running.name;
    }
    return names;
}

void Editor::setCursor(Point cursor) {
    const Prompt* const prompt = activePrompt();
    if (prompt != nullptr && prompt->base && prompt->takes(Prompt::Points) &&
        m_variables.integer("ORTHOMODE") == 1) {
        const Point way = cursor - *prompt->base;
        cursor = std::abs(way.x) >= std::abs(way.y) ? Point{cursor.x, prompt->base->y}
                                                    : Point{prompt->base->x, cursor.y};
    }
    m_cursor = cursor;
}

std::vector<Entity> Editor::preview() const {
    return m_commands.empty() ? std::vector<Entity>() : m_commands.back().command->preview(m_cursor);
}

const std::set<int>& Editor::selection() const {
    static const std::set<int> none;
    return m_commands.empty() ? none : m_commands.back().command->selection();
}

void Editor::setLastPoint(Point point) {
    m_variables.store("LASTPOINT", point);
}

std::string Editor::format(double value) const {
    return formatNumber(value, m_variables.integer("LUPREC"));
}

std::string Editor::format(Point point) const {
    return format(point.x) + "," + format(point.y);
}

}  // namespace cad
