#pragma once

// The base class of dockable bars.
// Simplified: bars do not float, and the host, not a CDockState, keeps the docking state.

#include <afxext.h>
#include <afxwin.h>
#include <objbase.h>

#include "adesk.h"

class CDockState;

/// A control bar that docks at an edge of the host's frame. Showing and docking it leave the keyboard focus
/// alone; when it is hidden with the focus in it, the focus goes to its parent, as for every window hidden
/// with ShowWindow.
class CAdUiDockControlBar : public CControlBar {
    DECLARE_DYNAMIC(CAdUiDockControlBar)

public:
    /// Simplified: the close button's position is ignored; it is always at the right.
    explicit CAdUiDockControlBar(short closeButtonPosition = 0);

    /// The GUID by which the host remembers where the bar is docked; it remembers nothing of a bar without
    /// one. Not copied: it must outlive the bar.
    void SetToolID(void* toolId) { m_toolId = static_cast<const GUID*>(toolId); }

    /// Docks the bar where the host remembers it (ArxHost::dockState), otherwise at the given dock bar;
    /// `state` is ignored. A bar for which EnableDocking() has not been called is not docked.
    virtual void RestoreControlBar(int dockBarId = AFX_IDW_DOCKBAR_LEFT, CDockState* state = nullptr);

    /// The limits for docking and for dragging the bar's edge, in pixels.
    virtual void GetMinimumSize(CSize& size);
    virtual void GetMaximumSize(CSize& size);

    void OnDockedSizing(CSize& size) override;

    /// The slice's own: the window style with which the program created the bar.
    DWORD RequestedStyle() const { return m_requestedStyle; }

protected:
    /// Creates the bar's window, hidden. `size` gives its size when docked.
    BOOL createBar(LPCTSTR title, DWORD style, const CRect& size, CWnd* parent);

    /// Called before the close button hides the bar; false cancels.
    virtual bool OnClosing();

    afx_msg void OnSize(UINT type, int width, int height);
    DECLARE_MESSAGE_MAP()

    CString m_title;

private:
    /// The tool id's text; empty without one.
    CString toolIdText() const;

    const GUID* m_toolId = nullptr;
    DWORD m_requestedStyle = 0;
};
