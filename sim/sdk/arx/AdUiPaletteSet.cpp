#include "AdUiPaletteSet.h"

#include <algorithm>

#include "AdUiPalette.h"
#include "ArxHost.h"

namespace {

constexpr int kCaptionHeight = 26;
constexpr int kTabHeight = 26;
constexpr int kTabWidth = 120;
constexpr int kMargin = 8;
constexpr int kCrossHalf = 4;
constexpr int kCrossWidth = 2;

struct Colors {
    COLORREF caption;
    COLORREF background;
    COLORREF text;
    COLORREF edge;
};

Colors colors() {
    if (arxHost().isDark()) {
        return {RGB(59, 68, 83), RGB(45, 52, 64), RGB(232, 234, 237), RGB(30, 35, 44)};
    }
    return {RGB(222, 227, 234), RGB(240, 242, 245), RGB(40, 44, 52), RGB(190, 196, 205)};
}

void fill(HDC dc, const CRect& rect, COLORREF color) {
    const HBRUSH brush = CreateSolidBrush(color);
    FillRect(dc, &rect, brush);
    DeleteObject(brush);
}

void drawText(HDC dc, const CString& text, CRect rect, UINT format) {
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, colors().text);
    SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    DrawTextW(dc, text, text.GetLength(), &rect,
              format | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}

void drawCross(HDC dc, const CRect& rect) {
    const HPEN pen = CreatePen(PS_SOLID, kCrossWidth, colors().text);
    const HGDIOBJ former = SelectObject(dc, pen);
    const CPoint center = rect.CenterPoint();
    MoveToEx(dc, center.x - kCrossHalf, center.y - kCrossHalf, nullptr);
    LineTo(dc, center.x + kCrossHalf + 1, center.y + kCrossHalf + 1);
    MoveToEx(dc, center.x - kCrossHalf, center.y + kCrossHalf, nullptr);
    LineTo(dc, center.x + kCrossHalf + 1, center.y - kCrossHalf - 1);
    SelectObject(dc, former);
    DeleteObject(pen);
}

}  // namespace

IMPLEMENT_DYNAMIC(CAdUiPaletteSet, CAdUiDockControlBar)

BEGIN_MESSAGE_MAP(CAdUiPaletteSet, CAdUiDockControlBar)
ON_WM_PAINT()
ON_WM_ERASEBKGND()
ON_WM_SIZE()
ON_WM_SIZING()
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONUP()
END_MESSAGE_MAP()

CAdUiPaletteSet::CAdUiPaletteSet(short closeButtonPosition) : CAdUiDockControlBar(closeButtonPosition) {}

CAdUiPaletteSet::~CAdUiPaletteSet() {
    if (arxVariant().setDestroysWindow) {
        DestroyWindow();
    }
    if (arxVariant().setDeletesPalettes) {
        for (CAdUiPalette* palette : m_palettes) {
            delete palette;
        }
    }
}

BOOL CAdUiPaletteSet::Create(LPCTSTR title, DWORD style, const CRect& size, CWnd* parent,
                             DWORD paletteSetStyle) {
    m_paletteSetStyle = paletteSetStyle;
    return createBar(title, style, size, parent);
}

int CAdUiPaletteSet::AddPalette(CAdUiPalette* palette) {
    if (palette == nullptr || palette->GetSafeHwnd() == nullptr) {
        return -1;
    }
    m_palettes.push_back(palette);
    const int index = GetPaletteCount() - 1;
    if (m_active < 0) {
        SetActivePalette(index);
    } else {
        palette->ShowWindow(SW_HIDE);
    }
    return index;
}

BOOL CAdUiPaletteSet::RemovePalette(int index) {
    CAdUiPalette* const palette = GetPalette(index);
    if (palette == nullptr) {
        return FALSE;
    }
    const CAdUiPalette* const active = GetActivePalette();
    m_palettes.erase(m_palettes.begin() + index);
    palette->ShowWindow(SW_HIDE);
    if (palette == active) {
        m_active = -1;
        SetActivePalette(0);
    } else if (index < m_active) {
        --m_active;
    }
    return TRUE;
}

CAdUiPalette* CAdUiPaletteSet::GetPalette(int index) const {
    return index >= 0 && index < GetPaletteCount() ? m_palettes[static_cast<std::size_t>(index)] : nullptr;
}

BOOL CAdUiPaletteSet::SetActivePalette(int index) {
    CAdUiPalette* const palette = GetPalette(index);
    if (palette == nullptr) {
        return FALSE;
    }
    if (CAdUiPalette* const former = GetActivePalette(); former != nullptr && former != palette) {
        former->ShowWindow(SW_HIDE);
    }
    m_active = index;
    layOutActivePalette();
    palette->ShowWindow(SW_SHOW);
    Invalidate();
    return palette->OnSetActive();
}

CRect CAdUiPaletteSet::clientRect() const {
    CRect client;
    GetClientRect(&client);
    return client;
}

CRect CAdUiPaletteSet::PaletteRect() const {
    CRect rect = clientRect();
    rect.top = std::min(rect.top + kCaptionHeight, rect.bottom);
    if (GetPaletteCount() > 1) {
        rect.bottom = std::max(rect.top, rect.bottom - kTabHeight);
    }
    return rect;
}

CRect CAdUiPaletteSet::CloseButtonRect() const {
    if ((m_paletteSetStyle & PSS_CLOSE_BUTTON) == 0) {
        return CRect(0, 0, 0, 0);
    }
    const CRect client = clientRect();
    return CRect(client.right - kCaptionHeight, 0, client.right, kCaptionHeight);
}

CRect CAdUiPaletteSet::tabRect(int index) const {
    const CRect client = clientRect();
    return CRect(index * kTabWidth, client.bottom - kTabHeight, (index + 1) * kTabWidth, client.bottom);
}

void CAdUiPaletteSet::layOutActivePalette() {
    if (CAdUiPalette* const palette = GetActivePalette()) {
        palette->MoveWindow(PaletteRect());
    }
}

BOOL CAdUiPaletteSet::PreTranslateMessage(MSG* message) {
    return CAdUiDockControlBar::PreTranslateMessage(message);
}

void CAdUiPaletteSet::drawCaption(HDC dc) const {
    CRect caption = clientRect();
    caption.bottom = kCaptionHeight;
    fill(dc, caption, colors().caption);
    fill(dc, CRect(caption.left, caption.bottom - 1, caption.right, caption.bottom), colors().edge);
    const CRect cross = CloseButtonRect();
    const int textRight = cross.IsRectEmpty() ? caption.right - kMargin : cross.left;
    drawText(dc, m_title, CRect(caption.left + kMargin, caption.top, textRight, caption.bottom), DT_LEFT);
    if (!cross.IsRectEmpty()) {
        drawCross(dc, cross);
    }
}

void CAdUiPaletteSet::drawTabs(HDC dc) const {
    if (GetPaletteCount() < 2) {
        return;
    }
    for (int i = 0; i < GetPaletteCount(); ++i) {
        fill(dc, tabRect(i), i == m_active ? colors().caption : colors().background);
        drawText(dc, GetPalette(i)->GetName(), tabRect(i), DT_CENTER);
    }
}

void CAdUiPaletteSet::OnPaint() {
    const CPaintDC context(this);
    const HDC dc = context.GetSafeHdc();
    fill(dc, clientRect(), colors().background);
    drawCaption(dc);
    drawTabs(dc);
}

BOOL CAdUiPaletteSet::OnEraseBkgnd(CDC*) {
    return TRUE;
}

void CAdUiPaletteSet::OnSize(UINT type, int width, int height) {
    CAdUiDockControlBar::OnSize(type, width, height);
    layOutActivePalette();
    Invalidate(FALSE);
}

void CAdUiPaletteSet::OnSizing(UINT side, LPRECT rect) {
    CAdUiDockControlBar::OnSizing(side, rect);
}

void CAdUiPaletteSet::OnLButtonDown(UINT flags, CPoint point) {
    CAdUiDockControlBar::OnLButtonDown(flags, point);
    m_closePressed = CloseButtonRect().PtInRect(point) != FALSE;
    if (GetPaletteCount() < 2) {
        return;
    }
    for (int i = 0; i < GetPaletteCount(); ++i) {
        if (tabRect(i).PtInRect(point)) {
            SetActivePalette(i);
        }
    }
}

void CAdUiPaletteSet::OnLButtonUp(UINT flags, CPoint point) {
    CAdUiDockControlBar::OnLButtonUp(flags, point);
    const bool close = m_closePressed && CloseButtonRect().PtInRect(point) && OnClosing();
    m_closePressed = false;
    if (close && GetDockingFrame() != nullptr) {
        GetDockingFrame()->ShowControlBar(this, FALSE, FALSE);
    }
}
