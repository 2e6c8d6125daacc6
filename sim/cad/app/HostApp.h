#pragma once

#include <afxwin.h>

#include <atomic>
#include <deque>
#include <fstream>
#include <functional>
#include <memory>

#include "sim/cad/core/Editor.h"
#include "sim/cad/core/HostState.h"
#include "sim/cad/core/Options.h"

namespace cad {

class ControlInterface;
class HostArx;
class MainFrame;
class QuitSignals;

/// The application. Run() is the program's own message loop. Only this loop processes queued input, so that
/// no command runs inside a message box or another nested loop.
class HostApp : public CWinApp, private EditorServices {
public:
    explicit HostApp(const Options& options);
    ~HostApp() override;

    BOOL InitInstance() override;
    int Run() override;
    int ExitInstance() override;

    Editor& editor() { return m_editor; }
    MainFrame* frame() { return m_frame; }
    /// The window to which other threads post messages; null while there is none. Any thread.
    HWND frameWindow() const { return m_frameWindow; }
    HostState& state() { return m_state; }
    const Options& options() const { return m_options; }
    /// Why InitInstance failed, for stderr; empty if it succeeded.
    const std::string& failure() const { return m_failure; }

    /// Queues the call for the program's own message loop; it never runs inside a nested one. UI thread.
    void runAtIdle(std::function<void()> call);
    /// Ends the program's own message loop and every nested one. UI thread.
    void requestQuit();
    /// Null without --control, and while the program shuts down.
    ControlInterface* control() { return m_control.get(); }

    bool loadModule(const std::string& path) override;
    bool unloadModule(const std::string& name) override;
    std::vector<std::string> loadedModules() const override;

private:
    void quit() override { requestQuit(); }
    void delay(int milliseconds) override;
    void wake() override;

    bool openLog();
    void echo(const std::string& text);
    void startUp();
    /// Runs the queued calls and processes queued input. Only Run() calls it.
    void work();

    Options m_options;
    HostState m_state;
    std::string m_stateFile;
    Editor m_editor;
    std::unique_ptr<HostArx> m_arx;
    std::unique_ptr<ControlInterface> m_control;
    std::unique_ptr<QuitSignals> m_signals;
    MainFrame* m_frame = nullptr;
    std::atomic<HWND> m_frameWindow{nullptr};
    std::deque<std::function<void()>> m_idleCalls;
    std::ofstream m_log;
    std::string m_failure;
    bool m_quitting = false;
    /// A wake-up message is queued or work() is running.
    bool m_woken = false;
};

}  // namespace cad
