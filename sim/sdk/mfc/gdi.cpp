#include "threadstate_.h"

IMPLEMENT_DYNCREATE(CDC, CObject)
IMPLEMENT_DYNAMIC(CPaintDC, CDC)
IMPLEMENT_DYNAMIC(CClientDC, CDC)
IMPLEMENT_DYNCREATE(CMenu, CObject)

CDC::~CDC() = default;

BOOL CDC::Attach(HDC dc) {
    m_hDC = dc;
    return dc != nullptr;
}

HDC CDC::Detach() {
    const HDC dc = m_hDC;
    m_hDC = nullptr;
    return dc;
}

LRESULT AFXAPI AfxWithDC(HDC dc, BOOL (*call)(CWnd* target, CDC* dc), CWnd* target) {
    CDC wrapper;
    wrapper.Attach(dc);
    return call(target, &wrapper);
}

CPaintDC::CPaintDC(CWnd* window) : m_ps(), m_hWnd(window->m_hWnd) {
    if (!Attach(::BeginPaint(m_hWnd, &m_ps))) {
        AfxThrowResourceException();
    }
}

CPaintDC::~CPaintDC() {
    ::EndPaint(m_hWnd, &m_ps);
    Detach();
}

CClientDC::CClientDC(CWnd* window) : m_hWnd(window == nullptr ? nullptr : window->m_hWnd) {
    if (!Attach(::GetDC(m_hWnd))) {
        AfxThrowResourceException();
    }
}

CClientDC::~CClientDC() {
    ::ReleaseDC(m_hWnd, Detach());
}

CMenu::~CMenu() {
    CMenu::DestroyMenu();
}

CMenu* PASCAL CMenu::FromHandle(HMENU menu) {
    if (menu == nullptr) {
        return nullptr;
    }
    std::unique_ptr<CMenu>& wrapper = afxThreadState().temporaryMenus[menu];
    if (wrapper == nullptr) {
        wrapper = std::make_unique<CMenu>();
        wrapper->m_hMenu = menu;
    }
    return wrapper.get();
}

BOOL CMenu::CreateMenu() {
    return Attach(::CreateMenu());
}
BOOL CMenu::CreatePopupMenu() {
    return Attach(::CreatePopupMenu());
}

BOOL CMenu::Attach(HMENU menu) {
    m_hMenu = menu;
    return menu != nullptr;
}

HMENU CMenu::Detach() {
    const HMENU menu = m_hMenu;
    m_hMenu = nullptr;
    return menu;
}

BOOL CMenu::DestroyMenu() {
    return m_hMenu != nullptr && ::DestroyMenu(Detach());
}

BOOL CMenu::AppendMenu(UINT flags, UINT_PTR idOrPopup, LPCTSTR text) {
    return ::AppendMenuW(m_hMenu, flags, idOrPopup, text);
}

BOOL CMenu::DeleteMenu(UINT position, UINT flags) {
    return ::DeleteMenu(m_hMenu, position, flags);
}

UINT CMenu::EnableMenuItem(UINT item, UINT enable) {
    return static_cast<UINT>(::EnableMenuItem(m_hMenu, item, enable));
}

UINT CMenu::CheckMenuItem(UINT item, UINT check) {
    return ::CheckMenuItem(m_hMenu, item, check);
}
int CMenu::GetMenuItemCount() const {
    return ::GetMenuItemCount(m_hMenu);
}
UINT CMenu::GetMenuItemID(int position) const {
    return ::GetMenuItemID(m_hMenu, position);
}
UINT CMenu::GetMenuState(UINT item, UINT flags) const {
    return ::GetMenuState(m_hMenu, item, flags);
}

int CMenu::GetMenuString(UINT item, CString& text, UINT flags) const {
    const int length = ::GetMenuStringW(m_hMenu, item, nullptr, 0, flags);
    text.Empty();
    if (length > 0) {
        ::GetMenuStringW(m_hMenu, item, text.GetBufferSetLength(length), length + 1, flags);
    }
    return length;
}

CMenu* CMenu::GetSubMenu(int position) const {
    return FromHandle(::GetSubMenu(m_hMenu, position));
}

BOOL CMenu::TrackPopupMenu(UINT flags, int x, int y, CWnd* window, LPCRECT rect) {
    return ::TrackPopupMenu(m_hMenu, flags, x, y, 0, window == nullptr ? nullptr : window->m_hWnd, rect);
}
