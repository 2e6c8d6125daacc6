#pragma once

// Frame windows and views. Include <afxwin.h>.
//
// Simplified: bars are docked directly in the frame, each in its own row, and never float; no documents, no
// MDI children (a CMDIFrameWnd is a frame with one pane), no LoadFrame (use Create and SetMenu).

#include <vector>

#include "afxwnd_.h"

class CControlBar;
class CView;

/// Sent to frames during idle processing.
#define WM_IDLEUPDATECMDUI 0x0363

/// A frame window: a pane in the middle and bars along its edges. Deletes itself when its window is
/// destroyed.
class CFrameWnd : public CWnd {
    DECLARE_DYNCREATE(CFrameWnd)

public:
    CFrameWnd();
    ~CFrameWnd() override;

    /// Lets the system choose position and size.
    static const CRect rectDefault;

    using CWnd::Create;
    virtual BOOL Create(LPCTSTR className, LPCTSTR windowName, DWORD style = WS_OVERLAPPEDWINDOW,
                        const RECT& rect = rectDefault, CWnd* parent = nullptr, LPCTSTR menuName = nullptr,
                        DWORD exStyle = 0, CCreateContext* context = nullptr);

    CView* GetActiveView() const { return m_pViewActive; }
    void SetActiveView(CView* view, BOOL notify = TRUE);
    BOOL IsFrameWnd() const override;

    /// Allows docking at these edges (CBRS_ALIGN_…).
    void EnableDocking(DWORD dockStyle);
    /// Docks the bar at an edge (AFX_IDW_DOCKBAR_…); 0 means the first edge that the bar's style and the
    /// frame allow. CInvalidArgException if there is none.
    void DockControlBar(CControlBar* bar, UINT dockBarId = 0, LPCRECT rect = nullptr);
    /// With `delay` the bar is shown or hidden in the next idle processing.
    void ShowControlBar(CControlBar* bar, BOOL show, BOOL delay);
    void AddControlBar(CControlBar* bar);
    void RemoveControlBar(CControlBar* bar);
    CControlBar* GetControlBar(UINT id) const;
    const std::vector<CControlBar*>& GetControlBars() const { return m_controlBars; }

    /// Positions the bars (fixed ones in order of creation, then docked ones at the top, bottom, left and
    /// right) and gives the remaining area to the child window with the id AFX_IDW_PANE_FIRST.
    virtual void RecalcLayout(BOOL notify = TRUE);
    void DelayRecalcLayout(BOOL notify = TRUE);

    BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo) override;

    BOOL PreCreateWindow(CREATESTRUCT& cs) override;

protected:
    void PostNcDestroy() override;

    afx_msg void OnClose();
    afx_msg void OnSize(UINT type, int cx, int cy);
    afx_msg void OnSetFocus(CWnd* oldWindow);
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    afx_msg void OnLButtonUp(UINT flags, CPoint point);
    afx_msg void OnMouseMove(UINT flags, CPoint point);
    afx_msg BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message);
    afx_msg void OnCaptureChanged(CWnd* newWindow);
    afx_msg LRESULT OnIdleUpdateCmdUI(WPARAM wParam, LPARAM lParam);

    DECLARE_MESSAGE_MAP()

private:
    /// The strip beside a resizable bar that drags its edge; in client coordinates.
    struct Splitter {
        CControlBar* bar;
        CRect rect;
        DWORD edge;
    };

    void placeBars(bool docked, DWORD edge, CRect& rest);
    void placeBar(CControlBar* bar, DWORD edge, CRect& rest);
    const Splitter* splitterAt(CPoint point) const;

    CView* m_pViewActive = nullptr;
    DWORD m_dockStyle = 0;
    std::vector<CControlBar*> m_controlBars;
    std::vector<Splitter> m_splitters;
    CControlBar* m_draggedBar = nullptr;
    DWORD m_draggedEdge = 0;
    CPoint m_dragStart;
    CSize m_dragSize;  ///< The bar's size when the drag began.
    CSize m_paneSize;
    bool m_layoutPending = false;
    bool m_inLayout = false;
};

class CMDIFrameWnd : public CFrameWnd {
    DECLARE_DYNCREATE(CMDIFrameWnd)
};

/// The view in a frame's pane. Deletes itself when its window is destroyed.
class CView : public CWnd {
    DECLARE_DYNAMIC(CView)

public:
    ~CView() override;

protected:
    CView() = default;

    /// Called for WM_PAINT. Simplified: not pure virtual; there is no document.
    virtual void OnDraw(CDC* dc);
    /// Called when the view becomes, or is no longer, its frame's active view.
    virtual void OnActivateView(BOOL activate, CView* activateView, CView* deactiveView);
    void PostNcDestroy() override;

    afx_msg void OnPaint();
    afx_msg void OnDestroy();

    DECLARE_MESSAGE_MAP()

    friend class CFrameWnd;
};
