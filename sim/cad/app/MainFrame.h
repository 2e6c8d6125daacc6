#pragma once

#include <afxwin.h>

#include <optional>

#include "sim/cad/app/CommandWindow.h"
#include "sim/cad/app/DrawingView.h"
#include "sim/cad/app/HostStatusBar.h"
#include "sim/cad/app/MainMenu.h"
#include "sim/cad/core/EditorListener.h"
#include "sim/cad/core/HostState.h"

namespace cad {

class HostApp;

/// The main window: menu bar, drawing view, palettes docked beside it, command line and status bar below.
class MainFrame : public CMDIFrameWnd, private EditorListener {
public:
    // Posted to the frame from other threads.
    static constexpr UINT kControlRequest = WM_APP + 1;
    static constexpr UINT kQuitRequest = WM_APP + 2;
    static constexpr UINT kPrintRequest = WM_APP + 3;
    static constexpr UINT kTypingTurn = WM_APP + 4;

    explicit MainFrame(HostApp& app);
    ~MainFrame() override;

    /// False when the window cannot be made.
    bool open(const std::optional<HostState::Window>& remembered, int width, int height);
    HostState::Window placement() const;

    DrawingView& view() { return *m_view; }
    CommandWindow& commandWindow() { return m_commandWindow; }
    HostStatusBar& statusBar() { return m_statusBar; }
    HostApp& app() { return m_app; }

    /// Paints what has changed since the last call.
    void refresh();
    /// Calls Editor::resume() after the time.
    void startDelay(int milliseconds);
    /// Tells the control interface when real input that was just made has been worked off: timers come after
    /// all other messages.
    void startInputTimer();
    /// Brings the loop round again after everything else that waits, painting and the user's input too.
    void startTurnTimer();

protected:
    void PostNcDestroy() override {}

    afx_msg void OnClose();
    afx_msg BOOL OnEraseBkgnd(CDC* dc);
    afx_msg void OnTimer(UINT_PTR id);
    afx_msg void OnSetFocus(CWnd* oldWindow);
    afx_msg void OnChar(UINT character, UINT repeats, UINT flags);
    afx_msg void OnKeyDown(UINT key, UINT repeats, UINT flags);
    afx_msg void OnMenuItem(UINT id);
    afx_msg LRESULT OnControlRequest(WPARAM wParam, LPARAM lParam);
    afx_msg LRESULT OnQuitRequest(WPARAM wParam, LPARAM lParam);
    afx_msg LRESULT OnPrintRequest(WPARAM wParam, LPARAM lParam);
    afx_msg LRESULT OnTypingTurn(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    void sysVarChanged(const std::string& name, bool success) override;
    void applyTheme();

    HostApp& m_app;
    KeyInput m_keys;
    MainMenu m_menu;
    DrawingView* m_view = nullptr;
    CommandWindow m_commandWindow;
    HostStatusBar m_statusBar;
    unsigned m_shownCommandLine = 0;
    unsigned m_shownDrawing = 0;
    unsigned m_shownViewport = 0;
};

}  // namespace cad
