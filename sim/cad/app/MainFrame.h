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
    // Messages posted to the frame, most of them by other threads.
    static constexpr UINT kControlRequest = WM_APP + 1;
    static constexpr UINT kQuitRequest = WM_APP + 2;
    static constexpr UINT kTypingTurn = WM_APP + 3;

    explicit MainFrame(HostApp& app);
    ~MainFrame() override;

    /// Creates and shows the window; false on failure. A `width` of 0 means the remembered or default size.
    bool open(const std::optional<HostState::Window>& remembered, int width, int height);
    HostState::Window placement() const;

    DrawingView& view() { return *m_view; }
    CommandWindow& commandWindow() { return m_commandWindow; }
    HostStatusBar& statusBar() { return m_statusBar; }
    HostApp& app() { return m_app; }

    /// Invalidates what has changed since the last call.
    void refresh();
    /// Calls Editor::resume() after the delay.
    void startDelay(int milliseconds);
    /// Notifies the control interface once the input just synthesized has been processed: WM_TIMER has a
    /// lower priority than input messages.
    void startInputTimer();
    /// Wakes the message loop again after all other pending messages, WM_PAINT and user input included.
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
