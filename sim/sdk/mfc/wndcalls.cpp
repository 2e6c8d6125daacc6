#include "afxwin.h"

// CWnd: the functions that only call Win32 with its handle, and the default handlers.

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return ::SendMessageW(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::PostMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return ::PostMessageW(m_hWnd, message, wParam, lParam);
}

void CWnd::MoveWindow(int x, int y, int width, int height, BOOL repaint) {
    ::MoveWindow(m_hWnd, x, y, width, height, repaint);
}

void CWnd::MoveWindow(LPCRECT rect, BOOL repaint) {
    MoveWindow(rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top, repaint);
}

BOOL CWnd::SetWindowPos(const CWnd* insertAfter, int x, int y, int cx, int cy, UINT flags) {
    return ::SetWindowPos(m_hWnd, insertAfter == nullptr ? nullptr : insertAfter->m_hWnd, x, y, cx, cy,
                          flags);
}

BOOL CWnd::ShowWindow(int command) {
    return ::ShowWindow(m_hWnd, command);
}
void CWnd::UpdateWindow() {
    ::UpdateWindow(m_hWnd);
}
void CWnd::Invalidate(BOOL erase) {
    ::InvalidateRect(m_hWnd, nullptr, erase);
}
void CWnd::InvalidateRect(LPCRECT rect, BOOL erase) {
    ::InvalidateRect(m_hWnd, rect, erase);
}
BOOL CWnd::RedrawWindow(LPCRECT rect, UINT flags) {
    return ::RedrawWindow(m_hWnd, rect, nullptr, flags);
}
void CWnd::BringWindowToTop() {
    ::BringWindowToTop(m_hWnd);
}
void CWnd::GetWindowRect(LPRECT rect) const {
    ::GetWindowRect(m_hWnd, rect);
}
void CWnd::GetClientRect(LPRECT rect) const {
    ::GetClientRect(m_hWnd, rect);
}
void CWnd::ClientToScreen(LPPOINT point) const {
    ::ClientToScreen(m_hWnd, point);
}
void CWnd::ScreenToClient(LPPOINT point) const {
    ::ScreenToClient(m_hWnd, point);
}

namespace {

/// Converts a rectangle's top-left corner and keeps its size.
void convertRect(HWND window, LPRECT rect, BOOL(WINAPI* convert)(HWND, LPPOINT)) {
    POINT corner = {rect->left, rect->top};
    convert(window, &corner);
    const CRect old(*rect);
    *rect = CRect(CPoint(corner), old.Size());
}

}  // namespace

void CWnd::ClientToScreen(LPRECT rect) const {
    convertRect(m_hWnd, rect, &::ClientToScreen);
}
void CWnd::ScreenToClient(LPRECT rect) const {
    convertRect(m_hWnd, rect, &::ScreenToClient);
}

DWORD CWnd::GetStyle() const {
    return static_cast<DWORD>(::GetWindowLongW(m_hWnd, GWL_STYLE));
}
DWORD CWnd::GetExStyle() const {
    return static_cast<DWORD>(::GetWindowLongW(m_hWnd, GWL_EXSTYLE));
}

BOOL CWnd::ModifyStyle(DWORD remove, DWORD add, UINT flags) {
    const DWORD oldStyle = GetStyle();
    const DWORD newStyle = (oldStyle & ~remove) | add;
    if (oldStyle == newStyle) {
        return FALSE;
    }
    ::SetWindowLongW(m_hWnd, GWL_STYLE, static_cast<LONG>(newStyle));
    if (flags != 0) {
        ::SetWindowPos(m_hWnd, nullptr, 0, 0, 0, 0,
                       SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | flags);
    }
    return TRUE;
}

BOOL CWnd::IsWindowVisible() const {
    return ::IsWindowVisible(m_hWnd);
}
BOOL CWnd::IsIconic() const {
    return ::IsIconic(m_hWnd);
}
BOOL CWnd::IsZoomed() const {
    return ::IsZoomed(m_hWnd);
}
BOOL CWnd::EnableWindow(BOOL enable) {
    return ::EnableWindow(m_hWnd, enable);
}
BOOL CWnd::IsWindowEnabled() const {
    return ::IsWindowEnabled(m_hWnd);
}
void CWnd::SetWindowText(LPCTSTR text) {
    ::SetWindowTextW(m_hWnd, text);
}
int CWnd::GetWindowText(LPTSTR buffer, int size) const {
    return ::GetWindowTextW(m_hWnd, buffer, size);
}
int CWnd::GetWindowTextLength() const {
    return ::GetWindowTextLengthW(m_hWnd);
}

void CWnd::GetWindowText(CString& text) const {
    const int length = GetWindowTextLength();
    ::GetWindowTextW(m_hWnd, text.GetBufferSetLength(length), length + 1);
    text.ReleaseBuffer();
}

CMenu* CWnd::GetMenu() const {
    return CMenu::FromHandle(::GetMenu(m_hWnd));
}
BOOL CWnd::SetMenu(CMenu* menu) {
    return ::SetMenu(m_hWnd, menu == nullptr ? nullptr : menu->m_hMenu);
}
void CWnd::DrawMenuBar() {
    ::DrawMenuBar(m_hWnd);
}

CWnd* CWnd::GetParent() const {
    return FromHandle(::GetParent(m_hWnd));
}

CWnd* CWnd::SetParent(CWnd* newParent) {
    return FromHandle(::SetParent(m_hWnd, newParent == nullptr ? nullptr : newParent->m_hWnd));
}

CWnd* CWnd::GetOwner() const {
    return GetParent();
}

CWnd* CWnd::GetTopLevelParent() const {
    if (m_hWnd == nullptr) {
        return nullptr;
    }
    HWND top = m_hWnd;
    for (HWND parent = ::GetParent(top); parent != nullptr; parent = ::GetParent(top)) {
        top = parent;
    }
    return FromHandle(top);
}

CFrameWnd* CWnd::GetParentFrame() const {
    for (CWnd* parent = GetParent(); parent != nullptr; parent = parent->GetParent()) {
        if (parent->IsFrameWnd()) {
            return static_cast<CFrameWnd*>(parent);
        }
    }
    return nullptr;
}

BOOL CWnd::IsFrameWnd() const {
    return FALSE;
}
CWnd* CWnd::GetDlgItem(int id) const {
    return FromHandle(::GetDlgItem(m_hWnd, id));
}
int CWnd::GetDlgCtrlID() const {
    return ::GetDlgCtrlID(m_hWnd);
}
BOOL CWnd::IsChild(const CWnd* window) const {
    return ::IsChild(m_hWnd, window->m_hWnd);
}
CWnd* CWnd::SetFocus() {
    return FromHandle(::SetFocus(m_hWnd));
}
CWnd* PASCAL CWnd::GetFocus() {
    return FromHandle(::GetFocus());
}
CWnd* CWnd::SetCapture() {
    return FromHandle(::SetCapture(m_hWnd));
}
CWnd* PASCAL CWnd::GetCapture() {
    return FromHandle(::GetCapture());
}
CWnd* CWnd::SetActiveWindow() {
    return FromHandle(::SetActiveWindow(m_hWnd));
}
CWnd* PASCAL CWnd::GetActiveWindow() {
    return FromHandle(::GetActiveWindow());
}
BOOL CWnd::SetForegroundWindow() {
    return ::SetForegroundWindow(m_hWnd);
}

UINT_PTR CWnd::SetTimer(UINT_PTR id, UINT elapse, void(CALLBACK* procedure)(HWND, UINT, UINT_PTR, DWORD)) {
    return ::SetTimer(m_hWnd, id, elapse, procedure);
}

BOOL CWnd::KillTimer(UINT_PTR id) {
    return ::KillTimer(m_hWnd, id);
}

int CWnd::MessageBox(LPCTSTR text, LPCTSTR caption, UINT type) {
    return ::MessageBoxW(m_hWnd, text, caption == nullptr ? AfxGetAppName() : caption, type);
}

// The default handlers call the window's default procedure.
int CWnd::OnCreate(LPCREATESTRUCT /*createStruct*/) {
    return static_cast<int>(Default());
}
void CWnd::OnDestroy() {
    Default();
}
void CWnd::OnClose() {
    Default();
}
void CWnd::OnPaint() {
    Default();
}
BOOL CWnd::OnEraseBkgnd(CDC* /*dc*/) {
    return Default() != 0;
}
void CWnd::OnMove(int /*x*/, int /*y*/) {
    Default();
}
void CWnd::OnSize(UINT /*type*/, int /*cx*/, int /*cy*/) {
    Default();
}
void CWnd::OnSizing(UINT /*side*/, LPRECT /*rect*/) {
    Default();
}
void CWnd::OnShowWindow(BOOL /*show*/, UINT /*status*/) {
    Default();
}
void CWnd::OnEnable(BOOL /*enable*/) {
    Default();
}
void CWnd::OnGetMinMaxInfo(MINMAXINFO* /*info*/) {
    Default();
}
void CWnd::OnActivate(UINT /*state*/, CWnd* /*other*/, BOOL /*minimized*/) {
    Default();
}
void CWnd::OnSetFocus(CWnd* /*oldWindow*/) {
    Default();
}
void CWnd::OnKillFocus(CWnd* /*newWindow*/) {
    Default();
}
void CWnd::OnLButtonDown(UINT /*flags*/, CPoint /*point*/) {
    Default();
}
void CWnd::OnLButtonUp(UINT /*flags*/, CPoint /*point*/) {
    Default();
}
void CWnd::OnLButtonDblClk(UINT /*flags*/, CPoint /*point*/) {
    Default();
}
void CWnd::OnRButtonDown(UINT /*flags*/, CPoint /*point*/) {
    Default();
}
void CWnd::OnRButtonUp(UINT /*flags*/, CPoint /*point*/) {
    Default();
}
void CWnd::OnMButtonDown(UINT /*flags*/, CPoint /*point*/) {
    Default();
}
void CWnd::OnMButtonUp(UINT /*flags*/, CPoint /*point*/) {
    Default();
}
void CWnd::OnMouseMove(UINT /*flags*/, CPoint /*point*/) {
    Default();
}
BOOL CWnd::OnMouseWheel(UINT /*flags*/, short /*delta*/, CPoint /*point*/) {
    return Default() != 0;
}
int CWnd::OnMouseActivate(CWnd* /*topLevel*/, UINT /*hitTest*/, UINT /*message*/) {
    return static_cast<int>(Default());
}
BOOL CWnd::OnSetCursor(CWnd* /*window*/, UINT /*hitTest*/, UINT /*message*/) {
    return Default() != 0;
}
void CWnd::OnCaptureChanged(CWnd* /*newWindow*/) {
    Default();
}
void CWnd::OnTimer(UINT_PTR /*id*/) {
    Default();
}
void CWnd::OnKeyDown(UINT /*key*/, UINT /*repeats*/, UINT /*flags*/) {
    Default();
}
void CWnd::OnKeyUp(UINT /*key*/, UINT /*repeats*/, UINT /*flags*/) {
    Default();
}
void CWnd::OnChar(UINT /*character*/, UINT /*repeats*/, UINT /*flags*/) {
    Default();
}
void CWnd::OnSysKeyDown(UINT /*key*/, UINT /*repeats*/, UINT /*flags*/) {
    Default();
}
void CWnd::OnSysKeyUp(UINT /*key*/, UINT /*repeats*/, UINT /*flags*/) {
    Default();
}
void CWnd::OnSysChar(UINT /*character*/, UINT /*repeats*/, UINT /*flags*/) {
    Default();
}
