#pragma once

#include <afxext.h>
#include <afxwin.h>

#include "adesk.h"

class CDockState;

/// A control bar that docks at the sides of the host's frame. Simplified: a bar docks left or right and does
/// not float.
class CAdUiDockControlBar : public CControlBar {
    DECLARE_DYNAMIC(CAdUiDockControlBar)

public:
    explicit CAdUiDockControlBar(short closeButtonPosition = 0);
    ~CAdUiDockControlBar() override;

    /// Makes the bar's window, hidden, with the size it will have when docked.
    virtual BOOL Create(CWnd* parent, LPCTSTR title, UINT id, DWORD style, const CRect& size);

    /// Which sides the bar may dock at (CBRS_ALIGN_...).
    void EnableDocking(DWORD dockStyle);
    /// Docks the bar as the host remembers it, else at the given dock bar.
    virtual void RestoreControlBar(int dockBarId = AFX_IDW_DOCKBAR_LEFT, CDockState* state = nullptr);

    BOOL IsVisible() const;

    virtual void GetMinimumSize(CSize& size);
    virtual void GetMaximumSize(CSize& size);

    CSize CalcFixedLayout(BOOL stretch, BOOL horizontal) override;
    CSize CalcDynamicLayout(int length, DWORD mode) override;
    void OnUpdateCmdUI(CFrameWnd* target, BOOL disableIfNoHandler) override;

protected:
    /// Asked before the close cross hides the bar; false keeps it.
    virtual bool OnClosing();
    /// Whether the host may take the keyboard focus back from the bar.
    virtual bool CanFrameworkTakeFocus();

    CSize m_dockedSize;
};
