#include "host/ZR_ZentriPaletteSet.h"

#include <rxmfcapi.h>

#include <utility>

#include "host/ZR_ZentriPalette.h"

IMPLEMENT_DYNAMIC(ZR_ZentriPaletteSet, CAdUiPaletteSet)

BEGIN_MESSAGE_MAP(ZR_ZentriPaletteSet, CAdUiPaletteSet)
ON_WM_SHOWWINDOW()
ON_WM_SIZE()
ON_WM_SIZING()
ON_MESSAGE(ZR_ZentriPalette::kKeepFocusMessage, &ZR_ZentriPaletteSet::OnAcadKeepFocus)
END_MESSAGE_MAP()

ZR_ZentriPaletteSet::ZR_ZentriPaletteSet() = default;

ZR_ZentriPaletteSet::~ZR_ZentriPaletteSet() {
    // Whether the base class deletes its palettes and destroys its window is not documented. So the palette
    // leaves it before it is deleted, and the window is destroyed here, while the message handlers still run.
    if (GetPaletteCount() > 0) {
        RemovePalette(0);
    }
    m_palette.reset();
    DestroyWindow();
}

void ZR_ZentriPaletteSet::addPalette(std::unique_ptr<ZR_ZentriPalette> palette) {
    m_palette = std::move(palette);
    AddPalette(m_palette.get());
}

void ZR_ZentriPaletteSet::yieldFocus() {
    const HWND focus = ::GetFocus();
    const bool inside = focus != nullptr && (focus == m_hWnd || ::IsChild(m_hWnd, focus) != FALSE);
    CWnd* const frame = acedGetAcadFrame();
    if (inside && frame != nullptr) {
        frame->SetFocus();
    }
}

void ZR_ZentriPaletteSet::OnShowWindow(BOOL show, UINT status) {
    CAdUiPaletteSet::OnShowWindow(show, status);
    if (show == FALSE) {
        yieldFocus();
    }
}

void ZR_ZentriPaletteSet::OnSize(UINT type, int width, int height) {
    CAdUiPaletteSet::OnSize(type, width, height);
    if (m_palette != nullptr) {
        m_palette->UpdateWindow();
    }
}

void ZR_ZentriPaletteSet::OnSizing(UINT, LPRECT) {}

LRESULT ZR_ZentriPaletteSet::OnAcadKeepFocus(WPARAM wParam, LPARAM lParam) {
    return m_palette != nullptr ? m_palette->SendMessage(ZR_ZentriPalette::kKeepFocusMessage, wParam, lParam)
                                : FALSE;
}
