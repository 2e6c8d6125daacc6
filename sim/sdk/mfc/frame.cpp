#include <algorithm>

#include "afxext.h"
#include "threadstate_.h"

IMPLEMENT_DYNCREATE(CFrameWnd, CWnd)
IMPLEMENT_DYNCREATE(CMDIFrameWnd, CFrameWnd)

BEGIN_MESSAGE_MAP(CFrameWnd, CWnd)
ON_WM_CLOSE()
ON_WM_SIZE()
ON_WM_SETFOCUS()
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONUP()
ON_WM_MOUSEMOVE()
ON_WM_SETCURSOR()
ON_WM_CAPTURECHANGED()
ON_MESSAGE(WM_IDLEUPDATECMDUI, &CFrameWnd::OnIdleUpdateCmdUI)
END_MESSAGE_MAP()

const CRect CFrameWnd::rectDefault(CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT);

namespace {

const int kSplitterWidth = 5;  // pixels
const int kLeastPane = 80;     // minimum size in pixels left to the pane when a bar's edge is dragged

struct DockPlace {
    UINT id;
    DWORD edge;
};
// Top and bottom first, so that they take the full width.
const DockPlace kDockPlaces[] = {{AFX_IDW_DOCKBAR_TOP, CBRS_ALIGN_TOP},
                                 {AFX_IDW_DOCKBAR_BOTTOM, CBRS_ALIGN_BOTTOM},
                                 {AFX_IDW_DOCKBAR_LEFT, CBRS_ALIGN_LEFT},
                                 {AFX_IDW_DOCKBAR_RIGHT, CBRS_ALIGN_RIGHT}};

bool isVertical(DWORD edge) {
    return (edge & CBRS_ORIENT_VERT) != 0;
}

/// Cuts a strip off an edge of a rectangle and returns it.
CRect cut(CRect& rest, DWORD edge, int size) {
    CRect strip = rest;
    switch (edge) {
        case CBRS_ALIGN_TOP:
            strip.bottom = rest.top = std::min<LONG>(rest.top + size, rest.bottom);
            break;
        case CBRS_ALIGN_BOTTOM:
            strip.top = rest.bottom = std::max<LONG>(rest.bottom - size, rest.top);
            break;
        case CBRS_ALIGN_LEFT:
            strip.right = rest.left = std::min<LONG>(rest.left + size, rest.right);
            break;
        default:
            strip.left = rest.right = std::max<LONG>(rest.right - size, rest.left);
            break;
    }
    return strip;
}

void place(const CWnd* window, const CRect& rect) {
    ::SetWindowPos(window->m_hWnd, nullptr, rect.left, rect.top, rect.Width(), rect.Height(),
                   SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

CFrameWnd::CFrameWnd() {
    afxThreadState().frames.push_back(this);
}

CFrameWnd::~CFrameWnd() {
    std::vector<CFrameWnd*>& frames = afxThreadState().frames;
    frames.erase(std::remove(frames.begin(), frames.end(), this), frames.end());
    for (CControlBar* bar : m_controlBars) {
        bar->m_pDockSite = nullptr;
    }
}

BOOL CFrameWnd::Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent,
                       LPCTSTR menuName, DWORD exStyle, CCreateContext* context) {
    if (menuName != nullptr) {
        AfxThrowNotSupportedException();  // there are no menu resources; use SetMenu
    }
    const bool byDefault = rect.left == CW_USEDEFAULT;
    return CreateEx(exStyle, className, windowName, style, rect.left, rect.top,
                    byDefault ? CW_USEDEFAULT : rect.right - rect.left,
                    byDefault ? CW_USEDEFAULT : rect.bottom - rect.top,
                    parent == nullptr ? nullptr : parent->m_hWnd, nullptr, context);
}

BOOL CFrameWnd::PreCreateWindow(CREATESTRUCT& cs) {
    if (cs.lpszClass == nullptr) {
        cs.lpszClass = AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursorW(nullptr, IDC_ARROW),
                                           ::GetSysColorBrush(COLOR_BTNFACE));
    }
    return TRUE;
}

void CFrameWnd::PostNcDestroy() {
    delete this;
}

BOOL CFrameWnd::IsFrameWnd() const {
    return TRUE;
}

void CFrameWnd::SetActiveView(CView* view, BOOL notify) {
    CView* const old = m_pViewActive;
    if (view == old) {
        return;
    }
    m_pViewActive = nullptr;  // there is no active view while the old one is notified
    if (old != nullptr) {
        old->OnActivateView(FALSE, view, old);
    }
    m_pViewActive = view;
    if (view != nullptr && notify) {
        view->OnActivateView(TRUE, view, old);
    }
}

BOOL CFrameWnd::OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo) {
    if (m_pViewActive != nullptr && m_pViewActive->OnCmdMsg(id, code, extra, handlerInfo)) {
        return TRUE;
    }
    if (CWnd::OnCmdMsg(id, code, extra, handlerInfo)) {
        return TRUE;
    }
    CWinApp* const app = AfxGetApp();
    return app != nullptr && app->OnCmdMsg(id, code, extra, handlerInfo);
}

void CFrameWnd::OnClose() {
    DestroyWindow();
}

void CFrameWnd::OnSize(UINT type, int cx, int cy) {
    CWnd::OnSize(type, cx, cy);
    if (type != SIZE_MINIMIZED) {
        RecalcLayout();
    }
}

void CFrameWnd::OnSetFocus(CWnd* oldWindow) {
    if (m_pViewActive != nullptr) {
        m_pViewActive->SetFocus();
    } else {
        CWnd::OnSetFocus(oldWindow);
    }
}

void CFrameWnd::EnableDocking(DWORD dockStyle) {
    m_dockStyle = dockStyle;
}

void CFrameWnd::AddControlBar(CControlBar* bar) {
    if (std::find(m_controlBars.begin(), m_controlBars.end(), bar) == m_controlBars.end()) {
        m_controlBars.push_back(bar);
    }
}

void CFrameWnd::RemoveControlBar(CControlBar* bar) {
    m_controlBars.erase(std::remove(m_controlBars.begin(), m_controlBars.end(), bar), m_controlBars.end());
    if (m_draggedBar == bar) {
        m_draggedBar = nullptr;
    }
    m_splitters.erase(std::remove_if(m_splitters.begin(), m_splitters.end(),
                                     [bar](const Splitter& splitter) { return splitter.bar == bar; }),
                      m_splitters.end());
    m_layoutPending = true;
}

CControlBar* CFrameWnd::GetControlBar(UINT id) const {
    for (CControlBar* bar : m_controlBars) {
        if (static_cast<UINT>(bar->GetDlgCtrlID()) == id) {
            return bar;
        }
    }
    return nullptr;
}

void CFrameWnd::DockControlBar(CControlBar* bar, UINT dockBarId, LPCRECT /*rect*/) {
    for (const DockPlace& dockPlace : kDockPlaces) {
        const bool wanted = dockBarId == 0
                                ? (dockPlace.edge & m_dockStyle & (bar->m_dwStyle | bar->m_dwDockStyle)) != 0
                                : dockPlace.id == dockBarId;
        if (wanted) {
            bar->m_dwStyle = (bar->m_dwStyle & ~CBRS_ALIGN_ANY) | dockPlace.edge;
            bar->m_nDockBarID = dockPlace.id;
            AddControlBar(bar);
            bar->m_pDockSite = this;
            m_layoutPending = true;
            return;
        }
    }
    AfxThrowInvalidArgException();
}

void CFrameWnd::ShowControlBar(CControlBar* bar, BOOL show, BOOL delay) {
    if (delay) {
        bar->DelayShow(show);
        return;
    }
    bar->DelayShow(show);
    bar->ApplyDelayedShow();
    RecalcLayout();
}

void CFrameWnd::DelayRecalcLayout(BOOL /*notify*/) {
    m_layoutPending = true;
}

LRESULT CFrameWnd::OnIdleUpdateCmdUI(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    const std::vector<CControlBar*> bars = m_controlBars;
    for (CControlBar* bar : bars) {
        if (bar->ApplyDelayedShow()) {
            m_layoutPending = true;
        }
    }
    if (m_layoutPending) {
        RecalcLayout();
    }
    return 0;
}

void CFrameWnd::RecalcLayout(BOOL /*notify*/) {
    if (m_inLayout || m_hWnd == nullptr) {
        return;
    }
    m_inLayout = true;
    m_layoutPending = false;
    m_splitters.clear();
    CRect rest;
    GetClientRect(&rest);
    placeBars(false, CBRS_ALIGN_ANY, rest);
    for (const DockPlace& dockPlace : kDockPlaces) {
        placeBars(true, dockPlace.edge, rest);
    }
    m_paneSize = rest.Size();
    const HWND pane = ::GetDlgItem(m_hWnd, AFX_IDW_PANE_FIRST);
    if (pane != nullptr) {
        ::SetWindowPos(pane, nullptr, rest.left, rest.top, rest.Width(), rest.Height(),
                       SWP_NOZORDER | SWP_NOACTIVATE);
    }
    m_inLayout = false;
}

void CFrameWnd::placeBars(bool docked, DWORD edge, CRect& rest) {
    // Iterate over a copy: a bar may be removed from the list while its window is moved.
    const std::vector<CControlBar*> bars = m_controlBars;
    for (CControlBar* bar : bars) {
        const DWORD barEdge = bar->m_dwStyle & CBRS_ALIGN_ANY;
        if (bar->m_hWnd != nullptr && (bar->GetStyle() & WS_VISIBLE) != 0 &&
            (bar->m_nDockBarID != 0) == docked && (barEdge & edge) != 0) {
            placeBar(bar, barEdge, rest);
        }
    }
}

void CFrameWnd::placeBar(CControlBar* bar, DWORD edge, CRect& rest) {
    const bool vertical = isVertical(edge);
    CSize size = bar->m_nDockBarID == 0
                     ? bar->CalcFixedLayout(TRUE, !vertical)
                     : bar->CalcDynamicLayout(-1, LM_STRETCH | (vertical ? LM_VERTDOCK : LM_HORZDOCK));
    place(bar, cut(rest, edge, vertical ? size.cx : size.cy));
    const bool resizable =
        bar->m_nDockBarID != 0 && ((bar->m_dwStyle | bar->m_dwDockStyle) & CBRS_SIZE_DYNAMIC) != 0;
    if (resizable) {
        m_splitters.push_back({bar, cut(rest, edge, kSplitterWidth), edge});
    }
}

const CFrameWnd::Splitter* CFrameWnd::splitterAt(CPoint point) const {
    for (const Splitter& splitter : m_splitters) {
        if (splitter.rect.PtInRect(point)) {
            return &splitter;
        }
    }
    return nullptr;
}

void CFrameWnd::OnLButtonDown(UINT flags, CPoint point) {
    const Splitter* const splitter = splitterAt(point);
    if (splitter == nullptr) {
        CWnd::OnLButtonDown(flags, point);
        return;
    }
    m_draggedBar = splitter->bar;
    m_draggedEdge = splitter->edge;
    m_dragStart = point;
    CRect rect;
    m_draggedBar->GetWindowRect(&rect);
    m_dragSize = rect.Size();
    SetCapture();
}

void CFrameWnd::OnMouseMove(UINT flags, CPoint point) {
    if (m_draggedBar == nullptr) {
        CWnd::OnMouseMove(flags, point);
        return;
    }
    const bool vertical = isVertical(m_draggedEdge);
    // Bars at the right and bottom grow towards the origin.
    const int sign = (m_draggedEdge & (CBRS_ALIGN_RIGHT | CBRS_ALIGN_BOTTOM)) != 0 ? -1 : 1;
    const CSize moved = point - m_dragStart;
    CRect rect;
    m_draggedBar->GetWindowRect(&rect);
    CSize size = m_draggedBar->m_sizeDocked;
    if (vertical) {
        const int most = rect.Width() + std::max<int>(m_paneSize.cx - kLeastPane, 0);
        size.cx = std::min<int>(m_dragSize.cx + sign * moved.cx, most);
    } else {
        const int most = rect.Height() + std::max<int>(m_paneSize.cy - kLeastPane, 0);
        size.cy = std::min<int>(m_dragSize.cy + sign * moved.cy, most);
    }
    m_draggedBar->OnDockedSizing(size);
    if (size != m_draggedBar->m_sizeDocked) {
        m_draggedBar->m_sizeDocked = size;
        RecalcLayout();
    }
}

void CFrameWnd::OnLButtonUp(UINT flags, CPoint point) {
    if (m_draggedBar == nullptr) {
        CWnd::OnLButtonUp(flags, point);
        return;
    }
    m_draggedBar = nullptr;
    ::ReleaseCapture();
}

void CFrameWnd::OnCaptureChanged(CWnd* newWindow) {
    m_draggedBar = nullptr;
    CWnd::OnCaptureChanged(newWindow);
}

BOOL CFrameWnd::OnSetCursor(CWnd* window, UINT hitTest, UINT message) {
    CPoint point;
    if (hitTest == HTCLIENT && ::GetCursorPos(&point)) {
        ScreenToClient(&point);
        if (const Splitter* const splitter = splitterAt(point)) {
            ::SetCursor(::LoadCursorW(nullptr, isVertical(splitter->edge) ? IDC_SIZEWE : IDC_SIZENS));
            return TRUE;
        }
    }
    return CWnd::OnSetCursor(window, hitTest, message);
}
