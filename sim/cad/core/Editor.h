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

/// What the editor needs of the program around it.
class EditorServices {
public:
    virtual ~EditorServices() = default;

    /// Asks the program to end; it does so later, not within the call.
    virtual void quit() = 0;
    /// False when the file cannot be loaded or is loaded already.
    virtual bool loadModule(const std::string& path) = 0;
    /// False when no such module is loaded or it will not leave.
    virtual bool unloadModule(const std::string& name) = 0;
    virtual std::vector<std::string> loadedModules() const = 0;
    /// The program calls Editor::resume() after the time.
    virtual void delay(int milliseconds) = 0;
    /// New input is waiting; the program calls Editor::processInput() when its loop comes round.
    virtual void wake() = 0;
};

enum class EditKey { Enter, Backspace, Delete, Left, Right, Home, End, Up, Down };

/// One document's command interpreter. Everything typed, picked or sent is queued; processInput() works the
/// queue off, and only the program's own loop calls that, never a nested one. UI thread.
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

    // Input. The texts are read as typed: blanks and line feeds are Enter where the prompt allows, U+0003 and
    // U+001B cancel.
    void typeCharacter(char32_t character);
    void typeKey(EditKey key);
    void pick(Point point);
    void sendString(const std::string& text, bool echo = true);
    /// Before everything that waits, in the order given.
    void sendFirst(const std::vector<std::string>& texts);
    /// The user's Escape: also drops everything that waits.
    void escape();

    /// Works the queue off, or as much of it as can be begun within the time; false when nothing was waiting.
    /// A call from inside a command does nothing.
    bool processInput(std::chrono::steady_clock::duration longest = std::chrono::hours(1));
    bool hasInput() const { return !m_queue.empty(); }
    /// Input is waiting that another call of processInput() would work off.
    bool hasWork() const { return !m_queue.empty() && !m_paused && !m_processing; }
    /// Holds the queue until resume().
    void pause() { m_paused = true; }
    void resume();

    /// No command is in progress.
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

    /// Sets the last point, which relative coordinates start from.
    void setLastPoint(Point point);
    /// Decimals as LUPREC wants them.
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
