#pragma once

// Device contexts and menus as thin owners of their handles. Include <afxwin.h>.
//
// Simplified: no drawing functions (draw with Win32's on the handle), and FromHandle of a menu gives the
// object that owns the handle or a temporary one.

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

/// Paints within WM_PAINT: BeginPaint while it lives.
class CPaintDC : public CDC {
    DECLARE_DYNAMIC(CPaintDC)

public:
    explicit CPaintDC(CWnd* window);
    ~CPaintDC() override;

    PAINTSTRUCT m_ps;

private:
    HWND m_hWnd;
};

/// The client area's context, released with the object.
class CClientDC : public CDC {
    DECLARE_DYNAMIC(CClientDC)

public:
    explicit CClientDC(CWnd* window);
    ~CClientDC() override;

private:
    HWND m_hWnd;
};

/// Destroys the menu it owns.
class CMenu : public CObject {
    DECLARE_DYNCREATE(CMenu)

public:
    CMenu() = default;
    ~CMenu() override;

    HMENU GetSafeHmenu() const { return m_hMenu; }
    operator HMENU() const { return m_hMenu; }  // NOLINT(google-explicit-constructor)
    /// Null for a null handle. A temporary object lives until the next idle time.
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
