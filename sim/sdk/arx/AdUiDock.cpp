#include "AdUiDock.h"

#include "ArxHost.h"

namespace {
constexpr int kMinimumSide = 120;
constexpr int kMaximumSide = 4096;
}  // namespace

IMPLEMENT_DYNAMIC(CAdUiDockControlBar, CControlBar)

BEGIN_MESSAGE_MAP(CAdUiDockControlBar, CControlBar)
ON_WM_SIZE()
END_MESSAGE_MAP()

CAdUiDockControlBar::CAdUiDockControlBar(short) {}

BOOL CAdUiDockControlBar::createBar(LPCTSTR title, DWORD style, const CRect& size, CWnd* parent) {
    if (parent == nullptr || parent->GetSafeHwnd() == nullptr) {
        return FALSE;
    }
    m_title = title;
    m_sizeDocked = size.Size();
    m_requestedStyle = style;
    m_dwStyle = CBRS_LEFT | CBRS_SIZE_DYNAMIC;
    // A docked bar has no non-client frame, and is hidden until the program shows it.
    const DWORD frameStyles = WS_DLGFRAME | WS_BORDER | WS_THICKFRAME | WS_VISIBLE;
    const DWORD windowStyle = (style & ~frameStyles) | WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
    const LPCTSTR windowClass = AfxRegisterWndClass(CS_DBLCLKS, LoadCursorW(nullptr, IDC_ARROW));
    return CWnd::Create(windowClass, title, windowStyle, size, parent, 0);
}

void CAdUiDockControlBar::RestoreControlBar(int dockBarId, CDockState*) {
    ArxDockState remembered;
    remembered.dockBarId = static_cast<UINT>(dockBarId);
    const CString toolId = toolIdText();
    if (!toolId.IsEmpty() && arxHost().dockState(toolId, remembered) && remembered.width > 0) {
        m_sizeDocked.cx = remembered.width;
        OnDockedSizing(m_sizeDocked);
    }
    if (CFrameWnd* const frame = m_dwDockStyle != 0 ? GetDockingFrame() : nullptr) {
        frame->DockControlBar(this, remembered.dockBarId);
    }
}

CString CAdUiDockControlBar::toolIdText() const {
    CString text;
    if (m_toolId != nullptr) {
        const BYTE* const last = m_toolId->Data4;
        text.Format(_T("{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}"),
                    static_cast<unsigned>(m_toolId->Data1), m_toolId->Data2, m_toolId->Data3, last[0],
                    last[1], last[2], last[3], last[4], last[5], last[6], last[7]);
    }
    return text;
}

void CAdUiDockControlBar::GetMinimumSize(CSize& size) {
    size = CSize(kMinimumSide, kMinimumSide);
}

void CAdUiDockControlBar::GetMaximumSize(CSize& size) {
    size = CSize(kMaximumSide, kMaximumSide);
}

void CAdUiDockControlBar::OnDockedSizing(CSize& size) {
    CSize minimum;
    CSize maximum;
    GetMinimumSize(minimum);
    GetMaximumSize(maximum);
    size.cx = size.cx < minimum.cx ? minimum.cx : (size.cx > maximum.cx ? maximum.cx : size.cx);
    size.cy = size.cy < minimum.cy ? minimum.cy : (size.cy > maximum.cy ? maximum.cy : size.cy);
}

bool CAdUiDockControlBar::OnClosing() {
    return true;
}

void CAdUiDockControlBar::OnSize(UINT type, int width, int height) {
    CControlBar::OnSize(type, width, height);
    const CString toolId = toolIdText();
    if (!toolId.IsEmpty() && m_nDockBarID != 0) {
        arxHost().dockStateChanged(toolId, ArxDockState{m_nDockBarID, static_cast<int>(m_sizeDocked.cx)});
    }
}
