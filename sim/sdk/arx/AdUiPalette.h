#pragma once

#include <afxwin.h>

#include "adesk.h"

class CAdUiPaletteSet;

/// One page of a palette set: a child window that fills what the set's frame leaves.
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

    /// Told when the palette becomes the set's active one; FALSE when the window is not there.
    virtual BOOL OnSetActive();
    /// Whether the host may take the keyboard focus back while the palette has it.
    virtual BOOL CanFrameworkTakeFocus();

protected:
    /// Takes the keyboard focus.
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    DECLARE_MESSAGE_MAP()

private:
    friend class CAdUiPaletteSet;

    CString m_name;
    CAdUiPaletteSet* m_paletteSet = nullptr;
    DWORD m_paletteStyle = 0;
};
