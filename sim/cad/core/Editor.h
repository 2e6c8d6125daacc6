#pragma once

#include <chrono>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "sim/cad/core/CommandLine.h"
#include "sim/cad/core/CommandTable.h"
#include "sim/cad/core/Drawing.h"
#include "sim/cad/core/EditorListener.h"
#include "sim/cad/core/SystemVariables.h"
#include "sim/cad/core/Viewport.h"

namespace cad {

/// What the editor needs from the program around it.
class EditorServices {
public:
    virtual ~EditorServices() = default;

    /// Asks the program to quit; it does so later, not within the call.
    virtual void quit() = 0;
    /// False if the file cannot be loaded or is loaded already.
    virtual bool loadModule(const std::string& path) = 0;
    /// False if no such module is loaded or it refuses to be unloaded.
    virtual bool unloadModule(const std::string& name) = 0;
    virtual std::vector<std::string> loadedModules() const = 0;
    /// Must call Editor::resume() after the delay.
    virtual void delay(int milliseconds) = 0;
    /// Input was queued; the program's own message loop must call Editor::processInput().
    virtual void wake() = 0;
};

enum class EditKey { Enter, Backspace, Delete, Left, Right, Home, End, Up, Down };

/// One document's command interpreter. Everything typed, picked or sent is queued until processInput(), which
/// only the program's own message loop calls, never a nested one. UI thread.
class Editor : private EditorListener {
public:
    explicit Editor(EditorServices& services);
    ~Editor() override;

    Drawing& drawing() { return m_drawing; }
    const Drawing& drawing() const { return m_drawing; }
    Viewport& viewport() { return m_viewport; }
    SystemVariables& variables() { return m_variables; }
    const SystemVariables& variables() const { return m_variables; }
    CommandLine& commandLine() { return m_commandLine; }
    EditorServices& services() { return m_services; }

    void setExternalCommands(const ExternalCommands* commands) { m_external = commands; }
    void addListener(EditorListener* listener);
    void removeListener(EditorListener* listener);

    // Queue input. Text is interpreted as if typed: line feeds, and spaces where the prompt allows, are
    // Enter; U+0003 and U+001B cancel.
    void typeCharacter(char32_t character);
    void typeKey(EditKey key);
    void pick(Point point);
    void sendString(const std::string& text, bool echo = true);
    /// Queues the texts, in the order given, before all pending input.
    void sendFirst(const std::vector<std::string>& texts);
    /// The user pressed Escape: discards all pending input, then cancels.
    void escape();

    /// Processes queued input, at least one item, until the queue is empty or the time is up. False if there
    /// was nothing to do. A call from inside a command does nothing.
    bool processInput(std::chrono::steady_clock::duration longest = std::chrono::hours(1));
    bool hasInput() const { return !m_queue.empty(); }
    /// Whether a call of processInput() would process anything now.
    bool hasWork() const { return !m_queue.empty() && !m_paused && !m_processing; }
    /// Suspends processing until resume().
    void pause() { m_paused = true; }
    void resume();

    /// Whether no command is in progress.
    bool isQuiescent() const { return m_commands.empty() && !m_runningExternal; }
    /// The prompt of the command in progress; null between commands.
    const Prompt* activePrompt() const;
    /// Global names, outermost first, joined by apostrophes; empty between commands.
    std::string activeCommandNames() const;

    Point cursor() const { return m_cursor; }
    void setCursor(Point cursor);
    /// What the command in progress would draw at the crosshair.
    std::vector<Entity> preview() const;
    const std::set<int>& selection() const;

    /// Sets the last point, to which coordinates with a leading @ are relative.
    void setLastPoint(Point point);
    /// Formats with as many decimals as LUPREC says.
    std::string format(double value) const;
    std::string format(Point point) const;

private:
    struct Item {
        enum Kind { Character, Key, Pick, Cancel };
        Kind kind;
        char32_t character;
        EditKey key;
        Point point;
        bool echo;
    };
    struct Running {
        std::string name;
        std::unique_ptr<Command> command;
    };

    void sysVarWillChange(const std::string& name) override;
    void sysVarChanged(const std::string& name, bool success) override;
    template <typename Call>
    void tell(Call call);

    static std::vector<Item> itemsOf(const std::string& text, bool echo);
    void process(const Item& item);
    void processKey(EditKey key);
    void processPick(Point point);
    void submit();
    void cancel();
    void submitCommand(const std::string& typed);
    void startBuiltIn(const BuiltInCommand& command, const std::string& typed);
    void runExternal(const ExternalCommand& command, const std::string& typed);
    void echoCommand(const std::string& typed);
    void give(const Input& input);
    void step();
    void finishTop(bool cancelled);
    void updatePrompt();
    std::optional<std::pair<const BuiltInCommand*, std::string>> transparentCommand(
        const std::string& typed) const;

    EditorServices& m_services;
    Drawing m_drawing;
    Viewport m_viewport;
    SystemVariables m_variables;
    CommandLine m_commandLine;
    const ExternalCommands* m_external = nullptr;
    std::vector<EditorListener*> m_listeners;
    std::deque<Item> m_queue;
    std::vector<Running> m_commands;
    std::string m_repeat;
    Point m_cursor;
    bool m_runningExternal = false;
    bool m_processing = false;
    bool m_paused = false;
    bool m_echo = true;
};

}  // namespace cad
