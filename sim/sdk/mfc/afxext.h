#pragma once

// CControlBar.
// Simplified: the base class only (no toolbars, status bars or dialog bars); no floating bars. A docked bar
// with CBRS_SIZE_DYNAMIC can be resized by dragging its inner edge, which MFC leaves to derived classes.

#include <afxwin.h>

// Control bar styles.
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

// CalcDynamicLayout's mode.
#define LM_STRETCH 0x01U
#define LM_HORZ 0x02U
#define LM_MRUWIDTH 0x04U
#define LM_HORZDOCK 0x08U
#define LM_VERTDOCK 0x10U
#define LM_LENGTHY 0x20U
#define LM_COMMIT 0x40U

class CDockState;

/// A bar along an edge of its frame. Creating its window as a child of the frame registers it with the frame.
class CControlBar : public CWnd {
    DECLARE_DYNAMIC(CControlBar)

public:
    ~CControlBar() override;

    BOOL m_bAutoDelete = FALSE;  ///< Delete the object when its window is destroyed.
    DWORD m_dwStyle = 0;         ///< CBRS_… style, including the edge (CBRS_ALIGN_…) where the bar is.
    DWORD m_dwDockStyle = 0;     ///< EnableDocking's argument: the edges where the bar may dock.
    CFrameWnd* m_pDockSite = nullptr;
    UINT m_nDockBarID = 0;  ///< The AFX_IDW_DOCKBAR_… where the bar is docked; 0 for a fixed bar.
    CSize m_sizeDocked;     ///< cx: width when docked left or right; cy: height at the top or bottom. Pixels.

    DWORD GetBarStyle() const { return m_dwStyle; }
    void SetBarStyle(DWORD style) { m_dwStyle = style & CBRS_ALL; }
    void EnableDocking(DWORD dockStyle);
    CFrameWnd* GetDockingFrame() const { return m_pDockSite; }
    /// Whether the bar is visible, or will be after a pending DelayShow.
    BOOL IsVisible() const;
    BOOL IsFloating() const { return FALSE; }

    /// The size along an edge; a stretched bar returns 32767 for the direction along the edge.
    virtual CSize CalcFixedLayout(BOOL stretch, BOOL horizontal);
    /// The same for docked bars. The base class returns m_sizeDocked, or CalcFixedLayout's size if that is
    /// not set.
    virtual CSize CalcDynamicLayout(int length, DWORD mode);
    /// May limit the size while the user drags a docked bar's edge. The base class enforces a minimum of 20
    /// pixels.
    virtual void OnDockedSizing(CSize& size);

    /// Shows or hides the bar in the next idle processing.
    void DelayShow(BOOL show);
    /// Applies a pending DelayShow; true if the layout changes.
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
