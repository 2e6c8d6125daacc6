#include "AdUiPalette.h"

#include "AdUiPaletteSet.h"
#include "ArxHost.h"

IMPLEMENT_DYNAMIC(CAdUiPalette, CWnd)

BEGIN_MESSAGE_MAP(CAdUiPalette, CWnd)
ON_WM_LBUTTONDOWN()
END_MESSAGE_MAP()

CAdUiPalette::~CAdUiPalette() {
    if (arxVariant().setDestroysWindow) {
        DestroyWindow();
    }
}

BOOL CAdUiPalette::Create(DWORD style, LPCTSTR name, CAdUiPaletteSet* paletteSet, DWORD paletteStyle) {
    if (paletteSet == nullptr || paletteSet->GetSafeHwnd() == nullptr) {
        return FALSE;
    }
    m_name = name;
    m_paletteSet = paletteSet;
    m_paletteStyle = paletteStyle;
    const LPCTSTR windowClass = AfxRegisterWndClass(CS_DBLCLKS, LoadCursorW(nullptr, IDC_ARROW));
    const DWORD windowStyle = style | WS_CHILD | WS_CLIPCHILDREN;
    const CRect rect = paletteSet->PaletteRect();
    return CWnd::Create(windowClass, name, windowStyle, rect, paletteSet, 0);
}

BOOL CAdUiPalette::OnSetActive() {
    return GetSafeHwnd() != nullptr ? TRUE : FALSE;
}

BOOL CAdUiPalette::CanFrameworkTakeFocus() {
    return TRUE;
}

void CAdUiPalette::OnLButtonDown(UINT flags, CPoint point) {
    SetFocus();
    CWnd::OnLButtonDown(flags, point);
}
