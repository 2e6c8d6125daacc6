#include "afxext.h"

IMPLEMENT_DYNAMIC(CControlBar, CWnd)

BEGIN_MESSAGE_MAP(CControlBar, CWnd)
ON_WM_CREATE()
ON_WM_DESTROY()
END_MESSAGE_MAP()

namespace {

const int kStretch = 32767;   // the length of a bar that takes the whole edge
const int kLeastDocked = 20;  // minimum size in pixels when a docked bar's edge is dragged

}  // namespace

CControlBar::~CControlBar() {
    m_bAutoDelete = FALSE;  // already being deleted
    DestroyWindow();
    if (m_pDockSite != nullptr) {
        m_pDockSite->RemoveControlBar(this);
    }
}

BOOL CControlBar::PreCreateWindow(CREATESTRUCT& cs) {
    if (cs.lpszClass == nullptr) {
        cs.lpszClass = AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursorW(nullptr, IDC_ARROW),
                                           ::GetSysColorBrush(COLOR_BTNFACE));
    }
    return CWnd::PreCreateWindow(cs);
}

int CControlBar::OnCreate(LPCREATESTRUCT createStruct) {
    if (CWnd::OnCreate(createStruct) == -1) {
        return -1;
    }
    CWnd* const parent = GetParent();
    if (parent != nullptr && parent->IsFrameWnd()) {
        m_pDockSite = static_cast<CFrameWnd*>(parent);
        m_pDockSite->AddControlBar(this);
    }
    return 0;
}

void CControlBar::OnDestroy() {
    if (m_pDockSite != nullptr) {
        m_pDockSite->RemoveControlBar(this);
        m_pDockSite = nullptr;
    }
    CWnd::OnDestroy();
}

void CControlBar::PostNcDestroy() {
    if (m_bAutoDelete) {
        delete this;
    }
}

void CControlBar::EnableDocking(DWORD dockStyle) {
    m_dwDockStyle = dockStyle;
    m_dwStyle |= dockStyle & (CBRS_SIZE_DYNAMIC | CBRS_SIZE_FIXED);
}

BOOL CControlBar::IsVisible() const {
    switch (m_pending) {
        case Pending::show:
            return TRUE;
        case Pending::hide:
            return FALSE;
        default:
            return m_hWnd != nullptr && (GetStyle() & WS_VISIBLE) != 0;
    }
}

CSize CControlBar::CalcFixedLayout(BOOL stretch, BOOL horizontal) {
    return {stretch && horizontal ? kStretch : 0, stretch && !horizontal ? kStretch : 0};
}

CSize CControlBar::CalcDynamicLayout(int /*length*/, DWORD mode) {
    if ((mode & LM_VERTDOCK) != 0 && m_sizeDocked.cx > 0) {
        return {static_cast<int>(m_sizeDocked.cx), kStretch};
    }
    if ((mode & LM_HORZDOCK) != 0 && m_sizeDocked.cy > 0) {
        return {kStretch, static_cast<int>(m_sizeDocked.cy)};
    }
    return CalcFixedLayout((mode & LM_STRETCH) != 0, (mode & (LM_HORZ | LM_HORZDOCK)) != 0);
}

void CControlBar::OnDockedSizing(CSize& size) {
    size.cx = size.cx < kLeastDocked ? kLeastDocked : size.cx;
    size.cy = size.cy < kLeastDocked ? kLeastDocked : size.cy;
}

void CControlBar::DelayShow(BOOL show) {
    m_pending = show ? Pending::show : Pending::hide;
}

BOOL CControlBar::ApplyDelayedShow() {
    const Pending pending = m_pending;
    m_pending = Pending::nothing;
    if (pending == Pending::nothing || m_hWnd == nullptr) {
        return FALSE;
    }
    const bool show = pending == Pending::show;
    const bool visible = (GetStyle() & WS_VISIBLE) != 0;
    if (show == visible) {
        return FALSE;
    }
    // Not with SetWindowPos, which would not send WM_SHOWWINDOW.
    ::ShowWindow(m_hWnd, show ? SW_SHOWNA : SW_HIDE);
    return TRUE;
}
