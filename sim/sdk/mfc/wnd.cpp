#include "threadstate_.h"

// CWnd: handle maps, creation and destruction, message routing.

IMPLEMENT_DYNCREATE(CWnd, CCmdTarget)

BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
ON_WM_NCDESTROY()
END_MESSAGE_MAP()

CWnd::~CWnd() {
    if (m_hWnd == nullptr) {
        return;
    }
    if (m_temporary) {
        m_hWnd = nullptr;
    } else {
        // Too late for the derived classes' handlers, but the window must be destroyed.
        TRACE(
            "Warning: calling DestroyWindow in CWnd::~CWnd; OnDestroy or PostNcDestroy in derived class "
            "will not be called.\n");
        CWnd::DestroyWindow();
    }
}

CWnd* PASCAL CWnd::FromHandlePermanent(HWND window) {
    const AfxThreadState& state = afxThreadState();
    const auto found = state.windows.find(window);
    return found == state.windows.end() ? nullptr : found->second;
}

CWnd* PASCAL CWnd::FromHandle(HWND window) {
    if (window == nullptr) {
        return nullptr;
    }
    if (CWnd* const permanent = FromHandlePermanent(window)) {
        return permanent;
    }
    std::unique_ptr<CWnd>& temporary = afxThreadState().temporaryWindows[window];
    if (temporary == nullptr) {
        temporary = std::make_unique<CWnd>();
        temporary->m_hWnd = window;
        temporary->m_temporary = true;
    }
    return temporary.get();
}

CWnd* AFXAPI AfxWndFromHandle(HWND window) {
    return CWnd::FromHandle(window);
}

void PASCAL CWnd::DeleteTempMap() {
    AfxThreadState& state = afxThreadState();
    state.temporaryWindows.clear();
    for (auto& [handle, menu] : state.temporaryMenus) {
        menu->Detach();
    }
    state.temporaryMenus.clear();
}

BOOL CWnd::Attach(HWND window) {
    ASSERT(m_hWnd == nullptr);
    if (window == nullptr) {
        return FALSE;
    }
    afxThreadState().windows[window] = this;
    m_hWnd = window;
    return TRUE;
}

HWND CWnd::Detach() {
    const HWND window = m_hWnd;
    if (window != nullptr) {
        afxThreadState().windows.erase(window);
        m_hWnd = nullptr;
    }
    return window;
}

void CWnd::hookWindow() {
    const auto previous = reinterpret_cast<WNDPROC>(::SetWindowLongPtrW(
        m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(static_cast<WNDPROC>(&AfxWndProc))));
    m_pfnSuper = previous == &AfxWndProc ? nullptr : previous;
}

BOOL CWnd::SubclassWindow(HWND window) {
    if (!Attach(window)) {
        return FALSE;
    }
    PreSubclassWindow();
    hookWindow();
    return TRUE;
}

HWND CWnd::UnsubclassWindow() {
    if (m_pfnSuper != nullptr) {
        ::SetWindowLongPtrW(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_pfnSuper));
        m_pfnSuper = nullptr;
    }
    return Detach();
}

void CWnd::PreSubclassWindow() {}

LRESULT CALLBACK CWnd::cbtFilter(int code, WPARAM wParam, LPARAM lParam) {
    AfxThreadState& state = afxThreadState();
    const HHOOK hook = state.cbtHook;
    if (code != HCBT_CREATEWND || state.wndInit == nullptr) {
        return ::CallNextHookEx(hook, code, wParam, lParam);
    }
    CWnd* const window = state.wndInit;
    state.wndInit = nullptr;
    window->Attach(reinterpret_cast<HWND>(wParam));
    window->PreSubclassWindow();
    window->hookWindow();
    const LRESULT result = ::CallNextHookEx(hook, code, wParam, lParam);
    // Remove the hook: windows that are created while this one handles WM_CREATE must not be attached.
    ::UnhookWindowsHookEx(hook);
    state.cbtHook = nullptr;
    return result;
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, int x, int y,
                    int width, int height, HWND parent, HMENU idOrMenu, LPVOID parameter) {
    CREATESTRUCT cs = {};
    cs.dwExStyle = exStyle;
    cs.lpszClass = className;
    cs.lpszName = windowName;
    cs.style = static_cast<LONG>(style);
    cs.x = x;
    cs.y = y;
    cs.cx = width;
    cs.cy = height;
    cs.hwndParent = parent;
    cs.hMenu = idOrMenu;
    cs.hInstance = AfxGetInstanceHandle();
    cs.lpCreateParams = parameter;
    if (!PreCreateWindow(cs)) {
        PostNcDestroy();
        return FALSE;
    }

    AfxThreadState& state = afxThreadState();
    if (state.cbtHook == nullptr) {
        state.cbtHook = ::SetWindowsHookExW(WH_CBT, &CWnd::cbtFilter, nullptr, ::GetCurrentThreadId());
        if (state.cbtHook == nullptr) {
            AfxThrowMemoryException();
        }
    }
    state.wndInit = this;
    const HWND window =
        ::CreateWindowExW(cs.dwExStyle, cs.lpszClass, cs.lpszName, static_cast<DWORD>(cs.style), cs.x, cs.y,
                          cs.cx, cs.cy, cs.hwndParent, cs.hMenu, cs.hInstance, cs.lpCreateParams);
    if (state.cbtHook != nullptr) {
        ::UnhookWindowsHookEx(state.cbtHook);
        state.cbtHook = nullptr;
    }
    if (state.wndInit != nullptr) {
        // The window was never created, so there was no WM_NCDESTROY to clean up.
        state.wndInit = nullptr;
        PostNcDestroy();
    }
    return window != nullptr;
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect,
                    CWnd* parent, UINT id, LPVOID parameter) {
    return CreateEx(exStyle, className, windowName, style, rect.left, rect.top, rect.right - rect.left,
                    rect.bottom - rect.top, parent == nullptr ? nullptr : parent->m_hWnd,
                    reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), parameter);
}

BOOL CWnd::Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent, UINT id,
                  CCreateContext* context) {
    if (parent == nullptr || (style & WS_POPUP) != 0) {
        AfxThrowInvalidArgException();
    }
    return CreateEx(0, className, windowName, style | WS_CHILD, rect, parent, id, context);
}

BOOL CWnd::PreCreateWindow(CREATESTRUCT& cs) {
    if (cs.lpszClass == nullptr) {
        cs.lpszClass =
            AfxRegisterWndClass(CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW, ::LoadCursorW(nullptr, IDC_ARROW));
    }
    return TRUE;
}

BOOL CWnd::DestroyWindow() {
    if (m_hWnd == nullptr) {
        return FALSE;
    }
    // A permanent object detaches its handle in WM_NCDESTROY and may be deleted by this call. One that was
    // only attached, without subclassing, gets no messages and has to be detached here.
    const HWND window = m_hWnd;
    const bool hooked = reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(window, GWLP_WNDPROC)) == &AfxWndProc;
    const BOOL result = ::DestroyWindow(window);
    if (!hooked && !m_temporary) {
        Detach();
    }
    return result;
}

void CWnd::OnNcDestroy() {
    CWinThread* const thread = AfxGetThread();
    if (thread != nullptr) {
        if (thread->m_pMainWnd == this) {
            AfxPostQuitMessage(0);
            thread->m_pMainWnd = nullptr;
        }
        if (thread->m_pActiveWnd == this) {
            thread->m_pActiveWnd = nullptr;
        }
    }
    Default();
    if (m_pfnSuper != nullptr) {
        ::SetWindowLongPtrW(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_pfnSuper));
        m_pfnSuper = nullptr;
    }
    Detach();
    PostNcDestroy();
}

void CWnd::PostNcDestroy() {}

LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    CWnd* const object = CWnd::FromHandlePermanent(window);
    if (object == nullptr || object->m_hWnd != window) {
        return ::DefWindowProcW(window, message, wParam, lParam);
    }
    return AfxCallWndProc(object, window, message, wParam, lParam);
}

LRESULT AFXAPI AfxCallWndProc(CWnd* window, HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    AfxThreadState& state = afxThreadState();
    const MSG outer = state.lastSentMsg;
    MSG& current = state.lastSentMsg;
    current.hwnd = handle;
    current.message = message;
    current.wParam = wParam;
    current.lParam = lParam;
    LRESULT result = 0;
    try {
        result = window->WindowProc(message, wParam, lParam);
    } catch (CException* e) {
        // An exception must not propagate through the system code that called us.
        const MSG failed = state.lastSentMsg;
        result = AfxProcessWndProcException(e, &failed);
        e->Delete();
    }
    state.lastSentMsg = outer;
    return result;
}

LRESULT AFXAPI AfxProcessWndProcException(CException* e, const MSG* msg) {
    CWinThread* const thread = AfxGetThread();
    if (thread != nullptr) {
        return thread->ProcessWndProcException(e, msg);
    }
    if (msg->message == WM_CREATE) {
        return -1;
    }
    if (msg->message == WM_PAINT) {
        // Otherwise WM_PAINT would be generated forever.
        ::ValidateRect(msg->hwnd, nullptr);
    }
    return 0;
}

const MSG* PASCAL CWnd::GetCurrentMessage() {
    return &afxThreadState().lastSentMsg;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    LRESULT result = 0;
    return OnWndMsg(message, wParam, lParam, &result) ? result : DefWindowProc(message, wParam, lParam);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    const UINT firstRegistered = 0xC000;
    if (message == WM_COMMAND) {
        if (!OnCommand(wParam, lParam)) {
            return FALSE;
        }
        *result = 1;
        return TRUE;
    }
    for (const AFX_MSGMAP* map = GetMessageMap(); map != nullptr;
         map = map->pfnGetBaseMap == nullptr ? nullptr : (*map->pfnGetBaseMap)()) {
        for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry->pfn != nullptr; ++entry) {
            const bool match = message < firstRegistered
                                   ? entry->nMessage == message
                                   : entry->pRegistered != nullptr && *entry->pRegistered == message;
            if (match) {
                *result = entry->pfn(this, wParam, lParam);
                return TRUE;
            }
        }
    }
    return FALSE;
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    return m_pfnSuper == nullptr ? ::DefWindowProcW(m_hWnd, message, wParam, lParam)
                                 : ::CallWindowProcW(m_pfnSuper, m_hWnd, message, wParam, lParam);
}

LRESULT CWnd::Default() {
    const MSG& current = afxThreadState().lastSentMsg;
    return DefWindowProc(current.message, current.wParam, current.lParam);
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam) {
    const UINT id = LOWORD(wParam);
    if (id == 0) {
        return FALSE;
    }
    // Without a control the command comes from a menu or an accelerator.
    const int code = lParam == 0 ? CN_COMMAND : HIWORD(wParam);
    return OnCmdMsg(id, code, nullptr, nullptr);
}

BOOL CWnd::OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo) {
    return CCmdTarget::OnCmdMsg(id, code, extra, handlerInfo);
}

BOOL CWnd::PreTranslateMessage(MSG* /*msg*/) {
    return FALSE;
}

BOOL PASCAL CWnd::WalkPreTranslateTree(HWND stop, MSG* msg) {
    for (HWND window = msg->hwnd; window != nullptr; window = ::GetParent(window)) {
        CWnd* const object = FromHandlePermanent(window);
        if (object != nullptr && object->PreTranslateMessage(msg)) {
            return TRUE;
        }
        if (window == stop) {
            break;
        }
    }
    return FALSE;
}

BOOL AFXAPI AfxRegisterClass(WNDCLASS* windowClass) {
    WNDCLASS existing = {};
    if (::GetClassInfoW(windowClass->hInstance, windowClass->lpszClassName, &existing)) {
        return TRUE;
    }
    return ::RegisterClassW(windowClass) != 0;
}

LPCTSTR AFXAPI AfxRegisterWndClass(UINT style, HCURSOR cursor, HBRUSH background, HICON icon) {
    const HINSTANCE instance = AfxGetInstanceHandle();
    CString& name = afxThreadState().className;
    // The name encodes the attributes, so that equal attributes share a class.
    name.Format(_T("Afx:%p:%x:%p:%p:%p"), static_cast<void*>(instance), style, static_cast<void*>(cursor),
                static_cast<void*>(background), static_cast<void*>(icon));
    WNDCLASS windowClass = {};
    windowClass.style = style;
    windowClass.lpfnWndProc = &::DefWindowProcW;
    windowClass.hInstance = instance;
    windowClass.hIcon = icon;
    windowClass.hCursor = cursor;
    windowClass.hbrBackground = background;
    windowClass.lpszClassName = name.GetString();
    if (!AfxRegisterClass(&windowClass)) {
        AfxThrowResourceException();
    }
    return name.GetString();
}
