#pragma once

// Device contexts and menus: thin wrappers of their handles. Include <afxwin.h>.
//
// Simplified: no drawing functions (call Win32's with the handle); there is no permanent handle map of menus,
// so CMenu::FromHandle always returns a temporary object.

#include "afxobject_.h"

#include "cstringt.h"

class CWnd;

class CDC : public CObject {
    DECLARE_DYNCREATE(CDC)

public:
    CDC() = default;
    ~CDC() override;

    HDC GetSafeHdc() const { return m_hDC; }
    operator HDC() const { return m_hDC; }  // NOLINT(google-explicit-constructor)
    BOOL Attach(HDC dc);
    HDC Detach();

    HDC m_hDC = nullptr;
};

/// For WM_PAINT: calls BeginPaint in its constructor and EndPaint in its destructor.
class CPaintDC : public CDC {
    DECLARE_DYNAMIC(CPaintDC)

public:
    explicit CPaintDC(CWnd* window);
    ~CPaintDC() override;

    PAINTSTRUCT m_ps;

private:
    HWND m_hWnd;
};

/// A window's client area: calls GetDC in its constructor and ReleaseDC in its destructor.
class CClientDC : public CDC {
    DECLARE_DYNAMIC(CClientDC)

public:
    explicit CClientDC(CWnd* window);
    ~CClientDC() override;

private:
    HWND m_hWnd;
};

/// Owns its menu; the destructor destroys it.
class CMenu : public CObject {
    DECLARE_DYNCREATE(CMenu)

public:
    CMenu() = default;
    ~CMenu() override;

    HMENU GetSafeHmenu() const { return m_hMenu; }
    operator HMENU() const { return m_hMenu; }  // NOLINT(google-explicit-constructor)
    /// A temporary object, valid until the next idle processing; null for a null handle.
    static CMenu* PASCAL FromHandle(HMENU menu);

    BOOL CreateMenu();
    BOOL CreatePopupMenu();
    BOOL Attach(HMENU menu);
    HMENU Detach();
    BOOL DestroyMenu();

    BOOL AppendMenu(UINT flags, UINT_PTR idOrPopup = 0, LPCTSTR text = nullptr);
    BOOL DeleteMenu(UINT position, UINT flags);
    UINT EnableMenuItem(UINT item, UINT enable);
    UINT CheckMenuItem(UINT item, UINT check);
    int GetMenuItemCount() const;
    UINT GetMenuItemID(int position) const;
    UINT GetMenuState(UINT item, UINT flags) const;
    int GetMenuString(UINT item, CString& text, UINT flags) const;
    CMenu* GetSubMenu(int position) const;
    BOOL TrackPopupMenu(UINT flags, int x, int y, CWnd* window, LPCRECT rect = nullptr);

    HMENU m_hMenu = nullptr;
};
