#pragma once

// CControlBar. Simplified: the base only (no tool, status or dialog bars), no floating bars, and a docked bar
// with CBRS_SIZE_DYNAMIC can be resized by dragging its inner edge, which MFC leaves to derived classes.

#include <afxwin.h>

// Styles of bars.
#define CBRS_NOALIGN 0x00000000U
#define CBRS_ALIGN_LEFT 0x00001000U
#define CBRS_ALIGN_TOP 0x00002000U
#define CBRS_ALIGN_RIGHT 0x00004000U
#define CBRS_ALIGN_BOTTOM 0x00008000U
#define CBRS_ALIGN_ANY 0x0000F000U
#define CBRS_BORDER_LEFT 0x00000100U
#define CBRS_BORDER_TOP 0x00000200U
#define CBRS_BORDER_RIGHT 0x00000400U
#define CBRS_BORDER_BOTTOM 0x00000800U
#define CBRS_BORDER_ANY 0x00000F00U
#define CBRS_TOOLTIPS 0x00000010U
#define CBRS_FLYBY 0x00000020U
#define CBRS_FLOAT_MULTI 0x00000040U
#define CBRS_BORDER_3D 0x00000080U
#define CBRS_HIDE_INPLACE 0x00000008U
#define CBRS_SIZE_DYNAMIC 0x00000004U
#define CBRS_SIZE_FIXED 0x00000002U
#define CBRS_FLOATING 0x00000001U
#define CBRS_GRIPPER 0x00400000U
#define CBRS_ORIENT_HORZ (CBRS_ALIGN_TOP | CBRS_ALIGN_BOTTOM)
#define CBRS_ORIENT_VERT (CBRS_ALIGN_LEFT | CBRS_ALIGN_RIGHT)
#define CBRS_ORIENT_ANY (CBRS_ORIENT_HORZ | CBRS_ORIENT_VERT)
#define CBRS_ALL 0x0040FFFFU
#define CBRS_LEFT (CBRS_ALIGN_LEFT | CBRS_BORDER_RIGHT)
#define CBRS_TOP (CBRS_ALIGN_TOP | CBRS_BORDER_BOTTOM)
#define CBRS_RIGHT (CBRS_ALIGN_RIGHT | CBRS_BORDER_LEFT)
#define CBRS_BOTTOM (CBRS_ALIGN_BOTTOM | CBRS_BORDER_TOP)

// What CalcDynamicLayout is asked for.
#define LM_STRETCH 0x01U
#define LM_HORZ 0x02U
#define LM_MRUWIDTH 0x04U
#define LM_HORZDOCK 0x08U
#define LM_VERTDOCK 0x10U
#define LM_LENGTHY 0x20U
#define LM_COMMIT 0x40U

class CDockState;

/// A bar along an edge of its frame. It joins the frame when its window is created as the frame's child.
class CControlBar : public CWnd {
    DECLARE_DYNAMIC(CControlBar)

public:
    ~CControlBar() override;

    BOOL m_bAutoDelete = FALSE;  ///< Delete the object when its window is destroyed.
    DWORD m_dwStyle = 0;         ///< CBRS_… of creation, with the edge the bar is at.
    DWORD m_dwDockStyle = 0;     ///< Edges the bar may dock at; not 0 after EnableDocking.
    CFrameWnd* m_pDockSite = nullptr;
    UINT m_nDockBarID = 0;  ///< AFX_IDW_DOCKBAR_… where the bar is docked; 0 for a fixed bar.
    CSize m_sizeDocked;     ///< Width when docked left or right, height at the top or bottom; pixels.

    DWORD GetBarStyle() const { return m_dwStyle; }
    void SetBarStyle(DWORD style) { m_dwStyle = style & CBRS_ALL; }
    void EnableDocking(DWORD dockStyle);
    CFrameWnd* GetDockingFrame() const { return m_pDockSite; }
    /// Shown, or about to be shown in idle time.
    BOOL IsVisible() const;
    BOOL IsFloating() const { return FALSE; }

    /// The size wanted along an edge; stretching bars give 32767 for the edge's length.
    virtual CSize CalcFixedLayout(BOOL stretch, BOOL horizontal);
    /// The same for docked bars; the base gives m_sizeDocked, or CalcFixedLayout when that is not set.
    virtual CSize CalcDynamicLayout(int length, DWORD mode);
    /// May limit the size that the user gives a docked bar by its edge. The base keeps it positive.
    virtual void OnDockedSizing(CSize& size);

    /// Shows or hides the bar in the next idle time.
    void DelayShow(BOOL show);
    /// Does what DelayShow put off; true when the layout changes.
    BOOL ApplyDelayedShow();

protected:
    CControlBar() = default;

    BOOL PreCreateWindow(CREATESTRUCT& cs) override;
    void PostNcDestroy() override;

    afx_msg int OnCreate(LPCREATESTRUCT createStruct);
    afx_msg void OnDestroy();

    DECLARE_MESSAGE_MAP()

private:
    enum class Pending { nothing, show, hide };
    Pending m_pending = Pending::nothing;
};
