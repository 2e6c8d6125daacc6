#pragma once

#include <afxext.h>
#include <afxwin.h>

#include "adesk.h"

class CDockState;

/// A control bar that docks at the sides of the host's frame. Simplified: it does not float.
class CAdUiDockControlBar : public CControlBar {
    DECLARE_DYNAMIC(CAdUiDockControlBar)

public:
    /// Where the close cross lies; there is one place only.
    explicit CAdUiDockControlBar(short closeButtonPosition = 0);

    /// Docks the bar where the host remembers it, else at the given dock bar. A docking state is not used:
    /// the host keeps it (ArxHost::dockState).
    virtual void RestoreControlBar(int dockBarId = AFX_IDW_DOCKBAR_LEFT, CDockState* state = nullptr);

    /// The sizes that docking and dragging keep to.
    virtual void GetMinimumSize(CSize& size);
    virtual void GetMaximumSize(CSize& size);

    void OnDockedSizing(CSize& size) override;

protected:
    /// Makes the bar's window, hidden, with the size it will have when docked.
    BOOL createBar(LPCTSTR title, DWORD style, const CRect& size, CWnd* parent);

    /// Asked before the close cross hides the bar; false keeps it.
    virtual bool OnClosing();

    afx_msg void OnSize(UINT type, int width, int height);
    afx_msg void OnShowWindow(BOOL show, UINT status);
    DECLARE_MESSAGE_MAP()

    CString m_title;
};
