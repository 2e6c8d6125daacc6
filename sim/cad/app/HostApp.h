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

/// The application. Run() is the program's only message loop: it alone works off what was typed or sent, so
/// that no command runs inside a message box or another nested loop.
class HostApp : public CWinApp, private EditorServices {
public:
    explicit HostApp(const Options& options);
    ~HostApp() override;

    BOOL InitInstance() override;
    int Run() override;
    int ExitInstance() override;

    Editor& editor() { return m_editor; }
    MainFrame* frame() { return m_frame; }
    /// Where other threads post to; null when there is no window.
    HWND frameWindow() const { return m_frameWindow; }
    HostState& state() { return m_state; }
    const Options& options() const { return m_options; }
    /// Why InitInstance failed, for the standard error output.
    const std::string& failure() const { return m_failure; }

    /// Runs the call in the program's own loop, never inside a nested one.
    void runAtIdle(std::function<void()> call);
    /// Ends the program's loop and every nested one. UI thread.
    void requestQuit();
    /// Null unless it was asked for, and when the program ends.
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
    /// Does what waits for the program's own loop.
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
    /// A message on its way, or the work itself, brings the loop round.
    bool m_woken = false;
};

}  // namespace cad
