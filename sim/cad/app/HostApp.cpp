#include "sim/cad/app/HostApp.h"

#include <ArxHost.h>
#include <afxcoll.h>
#include <rxdlinkr.h>
#include <rxregsvc.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "sim/cad/app/MainFrame.h"
#include "sim/cad/app/WideText.h"
#include "sim/cad/arx/HostArx.h"
#include "sim/cad/control/ControlInterface.h"
#include "sim/cad/core/Script.h"
#include "sim/cad/platform/Platform.h"
#include "sim/cad/platform/QuitSignals.h"

namespace cad {

namespace {

/// The longest time for which typed or script input is processed before messages are pumped again.
constexpr std::chrono::milliseconds kLongestTurn{50};

std::string signedInToken(const Options& options) {
    const char* const inherited = std::getenv("ZR_ZENTRI_TOKEN");
    return !options.token.empty() || inherited == nullptr ? options.token : inherited;
}

bool isFile(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(std::filesystem::u8path(path), error);
}

}  // namespace

HostApp::HostApp(const Options& options)
    : CWinApp(_T("Zentri Host")), m_options(options), m_editor(static_cast<EditorServices&>(*this)) {}

HostApp::~HostApp() = default;

BOOL HostApp::InitInstance() {
    for (const std::string& module : m_options.modules) {
        if (!isFile(module)) {
            m_failure = "cannot open module: " + module;
            return FALSE;
        }
    }
    if (!m_options.script.empty() && !readScript(m_options.script)) {
        m_failure = "cannot open script: " + m_options.script;
        return FALSE;
    }
    if (!openLog()) {
        return FALSE;
    }
    if (!m_options.noState) {
        m_stateFile = m_options.stateFile.empty() ? defaultStateFile() : m_options.stateFile;
        m_state = HostState::load(m_stateFile);
    }
    const int theme =
        m_options.theme.value_or(m_state.theme.value_or(m_editor.variables().integer("COLORTHEME")));
    m_editor.variables().store("COLORTHEME", theme);

    if (!platform::hasDisplay()) {
        m_failure = "cannot connect to the display";
        return FALSE;
    }
    m_frame = new MainFrame(*this);
    m_pMainWnd = m_frame;
    if (!m_frame->open(m_state.window, m_options.width, m_options.height)) {
        m_failure = "cannot create the window";
        return FALSE;
    }
    m_frameWindow = m_frame->GetSafeHwnd();
    m_arx = std::make_unique<HostArx>(*this, signedInToken(m_options), !m_options.noSignIn);
    if (m_options.controlPort) {
        const HWND frame = m_frameWindow;
        m_control = std::make_unique<ControlInterface>(
            *this, [frame] { ::PostMessage(frame, MainFrame::kControlRequest, 0, 0); },
            [frame] { ::PostMessage(frame, MainFrame::kTypingTurn, 0, 0); });
        if (!m_control->listen(*m_options.controlPort, m_failure)) {
            return FALSE;
        }
        std::cout << "control: 127.0.0.1:" << m_control->port() << std::endl;
    }
    const HWND frame = m_frameWindow;
    m_signals =
        std::make_unique<QuitSignals>([frame] { ::PostMessage(frame, MainFrame::kQuitRequest, 0, 0); });
    runAtIdle([this] { startUp(); });
    return TRUE;
}

bool HostApp::openLog() {
    if (!m_options.logFile.empty()) {
        m_log.open(std::filesystem::u8path(m_options.logFile), std::ios::binary | std::ios::app);
        if (!m_log) {
            m_failure = "cannot open log file: " + m_options.logFile;
            return false;
        }
    }
    m_editor.commandLine().setEcho([this](const std::string& text) { echo(text); });
    return true;
}

void HostApp::echo(const std::string& text) {
    // Text printed on the command line begins with a line feed; in a file every line ends with one.
    const std::string line = (!text.empty() && text[0] == '\n' ? text.substr(1) : text) + "\n";
    if (m_options.echo) {
        std::cout << line << std::flush;
    }
    if (m_log.is_open()) {
        m_log << line << std::flush;
    }
}

void HostApp::startUp() {
    for (const std::string& module : m_options.modules) {
        if (!loadModule(module)) {
            m_editor.commandLine().addLine(module + " 无法加载。");
        }
    }
    if (!m_options.script.empty()) {
        for (const std::string& line : readScript(m_options.script).value_or(std::vector<std::string>())) {
            m_editor.sendString(line);
        }
    }
}

int HostApp::Run() {
    bool idle = true;
    LONG idleCount = 0;
    work();
    for (;;) {
        while (idle && ::PeekMessage(&m_msgCur, nullptr, 0, 0, PM_NOREMOVE) == FALSE) {
            idle = OnIdle(idleCount++) != FALSE;
        }
        do {
            if (!PumpMessage()) {
                return ExitInstance();
            }
            work();
            if (IsIdleMessage(&m_msgCur)) {
                idle = true;
                idleCount = 0;
            }
        } while (::PeekMessage(&m_msgCur, nullptr, 0, 0, PM_NOREMOVE) != FALSE);
    }
}

void HostApp::work() {
    if (m_quitting) {
        return;
    }
    m_woken = true;
    while (!m_idleCalls.empty()) {
        const std::function<void()> call = std::move(m_idleCalls.front());
        m_idleCalls.pop_front();
        call();
    }
    m_editor.processInput(kLongestTurn);
    m_woken = false;
    if (!m_idleCalls.empty()) {
        wake();
    } else if (m_editor.hasWork()) {
        m_frame->startTurnTimer();
    }
    m_frame->refresh();
    if (m_control != nullptr) {
        m_control->loopCameRound();
    }
}

int HostApp::ExitInstance() {
    m_quitting = true;
    m_signals.reset();
    m_control.reset();
    if (m_arx != nullptr) {
        m_state.window = m_frame->placement();
        m_state.theme = m_editor.variables().integer("COLORTHEME");
        arxSendToModules(AcRx::kQuitMsg);
        arxUnloadAllModules();
        if (!m_stateFile.empty() && !m_state.save(m_stateFile)) {
            std::cerr << "zentri-host: cannot write the state file " << m_stateFile << std::endl;
        }
    }
    if (m_frame != nullptr) {
        if (m_frame->GetSafeHwnd() != nullptr) {
            m_frame->DestroyWindow();
        }
        m_pMainWnd = nullptr;
        delete m_frame;
        m_frame = nullptr;
    }
    m_frameWindow = nullptr;
    m_arx.reset();
    CWinApp::ExitInstance();
    return 0;
}

void HostApp::runAtIdle(std::function<void()> call) {
    m_idleCalls.push_back(std::move(call));
    wake();
}

void HostApp::requestQuit() {
    m_quitting = true;
    AfxPostQuitMessage(0);
}

bool HostApp::loadModule(const std::string& path) {
    return acrxLoadModule(toWide(path), false);
}

bool HostApp::unloadModule(const std::string& name) {
    return acrxUnloadModule(toWide(name));
}

std::vector<std::string> HostApp::loadedModules() const {
    const std::unique_ptr<CStringArray> names(static_cast<CStringArray*>(acrxLoadedApps()));
    std::vector<std::string> result;
    for (INT_PTR i = 0; names != nullptr && i < names->GetSize(); ++i) {
        result.push_back(fromWide(names->GetAt(i)));
    }
    return result;
}

void HostApp::delay(int milliseconds) {
    m_frame->startDelay(milliseconds);
}

void HostApp::wake() {
    // At most one wake-up message is queued, and none while work() runs: a script that calls itself would
    // otherwise flood the message queue.
    if (m_frameWindow != nullptr && !m_woken) {
        m_woken = ::PostMessage(m_frameWindow, WM_NULL, 0, 0) != FALSE;
    }
}

}  // namespace cad
