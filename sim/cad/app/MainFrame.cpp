#include "sim/cad/app/MainFrame.h"

#include <algorithm>
#include <string>

#include "sim/cad/app/HostApp.h"
#include "sim/cad/app/Theme.h"
#include "sim/cad/app/WideText.h"
#include "sim/cad/control/ControlInterface.h"
#include "sim/cad/platform/Platform.h"

namespace cad {

namespace {

constexpr UINT_PTR kDelayTimer = 1;
constexpr UINT_PTR kInputTimer = 2;
constexpr UINT_PTR kTurnTimer = 3;
// Time for the system to deliver synthesized input back to this process.
constexpr UINT kInputMilliseconds = 30;
constexpr int kDefaultWidth = 1280;
constexpr int kDefaultHeight = 800;
// At least this many pixels of a restored window must be on the screen; otherwise it is centered.
constexpr int kReachable = 80;

}  // namespace

BEGIN_MESSAGE_MAP(MainFrame, CMDIFrameWnd)
ON_WM_CLOSE()
ON_WM_ERASEBKGND()
ON_WM_TIMER()
ON_WM_SETFOCUS()
ON_WM_CHAR()
ON_WM_KEYDOWN()
ON_COMMAND_RANGE(MainMenu::kFirstId, MainMenu::kLastId, &MainFrame::OnMenuItem)
ON_MESSAGE(MainFrame::kControlRequest, &MainFrame::OnControlRequest)
ON_MESSAGE(MainFrame::kQuitRequest, &MainFrame::OnQuitRequest)
ON_MESSAGE(MainFrame::kTypingTurn, &MainFrame::OnTypingTurn)
END_MESSAGE_MAP()

MainFrame::MainFrame(HostApp& app)
    : m_app(app),
      m_keys(app.editor()),
      m_menu(app.editor()),
      m_commandWindow(app.editor()),
      m_statusBar(app.editor()) {
    app.editor().addListener(this);
}

MainFrame::~MainFrame() {
    m_app.editor().removeListener(this);
}

bool MainFrame::open(const std::optional<HostState::Window>& remembered, int width, int height) {
    const int screenWidth = ::GetSystemMetrics(SM_CXSCREEN);
    const int screenHeight = ::GetSystemMetrics(SM_CYSCREEN);
    HostState::Window place{0, 0, std::min(kDefaultWidth, screenWidth),
                            std::min(kDefaultHeight, screenHeight), false};
    const bool reachable = remembered && remembered->x < screenWidth - kReachable &&
                           remembered->y < screenHeight - kReachable && remembered->y >= 0 &&
                           remembered->x + remembered->width > kReachable;
    if (reachable) {
        place = *remembered;
    }
    if (width > 0) {
        place.width = width;
        place.height = height;
        place.maximized = false;
    }
    if (!reachable) {
        place.x = std::max(0, (screenWidth - place.width) / 2);
        place.y = std::max(0, (screenHeight - place.height) / 2);
    }
    applyTheme();
    const CString className = AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursor(nullptr, IDC_ARROW));
    const CRect rect(place.x, place.y, place.x + place.width, place.y + place.height);
    if (!Create(className, _T("Zentri Host — Drawing1.dwg"), WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, rect)) {
        return false;
    }
    m_menu.attachTo(*this);
    applyTheme();
    EnableDocking(CBRS_ALIGN_ANY);
    // CView deletes itself in PostNcDestroy.
    m_view = new DrawingView(m_app.editor());
    if (!m_statusBar.createIn(*this) || !m_commandWindow.createIn(*this) || !m_view->createIn(*this)) {
        return false;
    }
    SetActiveView(m_view);
    RecalcLayout();
    ShowWindow(place.maximized ? SW_SHOWMAXIMIZED : SW_SHOW);
    UpdateWindow();
    m_view->SetFocus();
    return true;
}

HostState::Window MainFrame::placement() const {
    CRect rect;
    GetWindowRect(&rect);
    return {rect.left, rect.top, rect.Width(), rect.Height(), IsZoomed() != FALSE};
}

void MainFrame::refresh() {
    Editor& editor = m_app.editor();
    const bool textChanged = editor.commandLine().revision() != m_shownCommandLine;
    const bool drawingChanged =
        editor.drawing().revision() != m_shownDrawing || editor.viewport().revision() != m_shownViewport;
    m_shownCommandLine = editor.commandLine().revision();
    m_shownDrawing = editor.drawing().revision();
    m_shownViewport = editor.viewport().revision();
    if (textChanged) {
        m_commandWindow.followText();
    }
    // Any answer to a prompt may change the preview.
    if (textChanged || drawingChanged) {
        m_view->Invalidate(FALSE);
    }
}

void MainFrame::startDelay(int milliseconds) {
    SetTimer(kDelayTimer, static_cast<UINT>(milliseconds), nullptr);
}

void MainFrame::startInputTimer() {
    SetTimer(kInputTimer, kInputMilliseconds, nullptr);
}

void MainFrame::startTurnTimer() {
    SetTimer(kTurnTimer, USER_TIMER_MINIMUM, nullptr);
}

void MainFrame::sysVarChanged(const std::string& name, bool success) {
    if (!success || GetSafeHwnd() == nullptr) {
        return;
    }
    if (name == "COLORTHEME") {
        applyTheme();
    }
    m_menu.update();
    m_view->Invalidate(FALSE);
    m_commandWindow.Invalidate(FALSE);
    m_statusBar.Invalidate(FALSE);
}

void MainFrame::applyTheme() {
    const Theme& theme = themeFor(m_app.editor().variables().integer("COLORTHEME"));
    platform::setSystemColors(theme);
    if (GetSafeHwnd() != nullptr) {
        platform::setMenuColors(GetSafeHwnd(), theme);
        DrawMenuBar();
        RedrawWindow(nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
    }
}

void MainFrame::OnClose() {
    m_app.requestQuit();
}

BOOL MainFrame::OnEraseBkgnd(CDC* dc) {
    CRect client;
    GetClientRect(&client);
    const Theme& theme = themeFor(m_app.editor().variables().integer("COLORTHEME"));
    makeCanvas(dc->GetSafeHdc())
        ->fill({0, 0, static_cast<double>(client.Width()), static_cast<double>(client.Height())},
               theme.border);
    return TRUE;
}

void MainFrame::OnTimer(UINT_PTR id) {
    if (id == kDelayTimer) {
        KillTimer(kDelayTimer);
        m_app.editor().resume();
    } else if (id == kInputTimer) {
        KillTimer(kInputTimer);
        if (m_app.control() != nullptr) {
            m_app.control()->inputSettled();
        }
    } else if (id == kTurnTimer) {
        // HostApp::Run() calls work() after dispatching this message.
        KillTimer(kTurnTimer);
    }
}

void MainFrame::OnSetFocus(CWnd*) {
    if (m_view != nullptr) {
        m_view->SetFocus();
    }
}

void MainFrame::OnChar(UINT character, UINT, UINT) {
    m_keys.character(character);
}

void MainFrame::OnKeyDown(UINT key, UINT repeats, UINT flags) {
    if (!m_keys.key(key)) {
        CMDIFrameWnd::OnKeyDown(key, repeats, flags);
    }
}

void MainFrame::OnMenuItem(UINT id) {
    m_menu.choose(id);
}

LRESULT MainFrame::OnControlRequest(WPARAM, LPARAM) {
    if (m_app.control() != nullptr) {
        m_app.control()->serve();
    }
    return 0;
}

LRESULT MainFrame::OnTypingTurn(WPARAM, LPARAM) {
    if (m_app.control() != nullptr) {
        m_app.control()->typingTurn();
    }
    return 0;
}

LRESULT MainFrame::OnQuitRequest(WPARAM, LPARAM) {
    m_app.requestQuit();
    return 0;
}

}  // namespace cad
