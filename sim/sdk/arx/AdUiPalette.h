#pragma once

// A palette of a palette set.
// Simplified: no tooltips, no persistence (Load and Save), no notifications but OnSetActive.

#include <afxwin.h>

#include "adesk.h"

class CAdUiPaletteSet;

/// One page of a palette set: a child window that fills the area inside the set's frame.
class CAdUiPalette : public CWnd {
    DECLARE_DYNAMIC(CAdUiPalette)

public:
    CAdUiPalette() = default;
    ~CAdUiPalette() override;

    using CWnd::Create;
    virtual BOOL Create(DWORD style, LPCTSTR name, CAdUiPaletteSet* paletteSet, DWORD paletteStyle);

    CString GetName() const { return m_name; }
    void SetName(LPCTSTR name) { m_name = name; }
    CAdUiPaletteSet* GetPaletteSet() const { return m_paletteSet; }
    DWORD GetPaletteStyle() const { return m_paletteStyle; }

    /// Called when the palette becomes the set's active one; FALSE if it has no window.
    virtual BOOL OnSetActive();
    /// Whether the host's frame may take the keyboard focus from the palette when the mouse moves over the
    /// drawing. It asks after WM_ACAD_KEEPFOCUS, and not at all if a window keeps the focus. By default it
    /// may.
    virtual BOOL CanFrameworkTakeFocus();

protected:
    /// Sets the keyboard focus to the palette.
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    DECLARE_MESSAGE_MAP()

private:
    friend class CAdUiPaletteSet;

    CString m_name;
    CAdUiPaletteSet* m_paletteSet = nullptr;
    DWORD m_paletteStyle = 0;
};
