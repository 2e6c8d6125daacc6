#include "host/ZR_ZentriPaletteSet.h"

#include "host/ZR_ZentriPalette.h"

IMPLEMENT_DYNAMIC(ZR_ZentriPaletteSet, CAdUiPaletteSet)

BEGIN_MESSAGE_MAP(ZR_ZentriPaletteSet, CAdUiPaletteSet)
ON_WM_SIZE()
ON_WM_SIZING()
END_MESSAGE_MAP()

void ZR_ZentriPaletteSet::addPalette(ZR_ZentriPalette* palette) {
    if (AddPalette(palette) >= 0) {
        m_palette = palette;
    }
}

void ZR_ZentriPaletteSet::GetMinimumSize(CSize& size) {
    CAdUiPaletteSet::GetMinimumSize(size);
}

void ZR_ZentriPaletteSet::GetMaximumSize(CSize& size) {
    CAdUiPaletteSet::GetMaximumSize(size);
}

BOOL ZR_ZentriPaletteSet::PreTranslateMessage(MSG* message) {
    return CAdUiPaletteSet::PreTranslateMessage(message);
}

bool ZR_ZentriPaletteSet::OnClosing() {
    return CAdUiPaletteSet::OnClosing();
}

void ZR_ZentriPaletteSet::OnSize(UINT type, int width, int height) {
    CAdUiPaletteSet::OnSize(type, width, height);
    if (m_palette != nullptr) {
        m_palette->UpdateWindow();
    }
}

void ZR_ZentriPaletteSet::OnSizing(UINT, LPRECT) {}
