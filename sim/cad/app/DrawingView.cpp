#include "sim/cad/app/DrawingView.h"

#include <AdUiPalette.h>
#include <adscodes.h>
#include <afxext.h>

#include <cmath>

#include "sim/cad/app/DrawingPainter.h"

namespace cad {

namespace {

constexpr double kZoomPerNotch = 1.25;

Point pointOf(CPoint point) {
    return {static_cast<double>(point.x), static_cast<double>(point.y)};
}

/// Whether the focus is in a palette and may be taken from it: no window from the focused one up to the frame
/// answers WM_ACAD_KEEPFOCUS with TRUE, and the palette lets the frame take the focus.
bool paletteYieldsFocus(HWND frame) {
    const HWND focus = ::GetFocus();
    CAdUiPalette* palette = nullptr;
    for (HWND window = focus; window != nullptr && window != frame; window = ::GetParent(window)) {
        if (palette == nullptr) {
            palette = dynamic_cast<CAdUiPalette*>(CWnd::FromHandlePermanent(window));
        }
    }
    if (palette == nullptr) {
        return false;
    }
    for (HWND window = focus; window != nullptr && window != frame; window = ::GetParent(window)) {
        if (::SendMessage(window, WM_ACAD_KEEPFOCUS, 0, 0) != 0) {
            return false;
        }
    }
    return palette->CanFrameworkTakeFocus() != FALSE;
}

}  // namespace

BEGIN_MESSAGE_MAP(DrawingView, CView)
ON_WM_PAINT()
ON_WM_ERASEBKGND()
ON_WM_SIZE()
ON_WM_LBUTTONDOWN()
ON_WM_RBUTTONDOWN()
ON_WM_MBUTTONDOWN()
ON_WM_MBUTTONUP()
ON_WM_MOUSEMOVE()
ON_WM_MOUSEWHEEL()
ON_WM_SETCURSOR()
ON_WM_CHAR()
ON_WM_KEYDOWN()
END_MESSAGE_MAP()

DrawingView::DrawingView(Editor& editor) : m_editor(editor), m_keys(editor) {}

bool DrawingView::createIn(CFrameWnd& frame) {
    const CString className = AfxRegisterWndClass(0, nullptr);
    return CWnd::Create(className, nullptr, WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, CRect(0, 0, 0, 0),
                        &frame, AFX_IDW_PANE_FIRST) != FALSE;
}

Point DrawingView::toDrawing(CPoint screen) const {
    ScreenToClient(&screen);
    return m_editor.viewport().toDrawing(pointOf(screen));
}

CPoint DrawingView::toScreen(Point drawing) const {
    const Point pixels = m_editor.viewport().toPixels(drawing);
    CPoint point(static_cast<int>(std::lround(pixels.x)), static_cast<int>(std::lround(pixels.y)));
    ClientToScreen(&point);
    return point;
}

void DrawingView::OnPaint() {
    CPaintDC dc(this);
    const auto canvas = makeCanvas(dc.GetSafeHdc());
    const Theme& theme = themeFor(m_editor.variables().integer("COLORTHEME"));
    paintDrawing(*canvas, m_editor, theme,
                 m_crosshair ? std::optional<Point>(pointOf(*m_crosshair)) : std::nullopt);
}

BOOL DrawingView::OnEraseBkgnd(CDC*) {
    return TRUE;
}

void DrawingView::OnSize(UINT type, int cx, int cy) {
    CView::OnSize(type, cx, cy);
    m_editor.viewport().resize(cx, cy);
    Invalidate(FALSE);
}

void DrawingView::OnLButtonDown(UINT, CPoint point) {
    SetFocus();
    m_crosshair = point;
    m_editor.pick(m_editor.viewport().toDrawing(pointOf(point)));
}

void DrawingView::OnRButtonDown(UINT, CPoint) {
    SetFocus();
    m_editor.typeKey(EditKey::Enter);
}

void DrawingView::OnMButtonDown(UINT, CPoint point) {
    m_panFrom = point;
    SetCapture();
}

void DrawingView::OnMButtonUp(UINT, CPoint) {
    if (m_panFrom) {
        m_panFrom.reset();
        ReleaseCapture();
    }
}

void DrawingView::OnMouseMove(UINT, CPoint point) {
    if (paletteYieldsFocus(GetParentFrame()->GetSafeHwnd())) {
        SetFocus();
    }
    Viewport& viewport = m_editor.viewport();
    if (m_panFrom) {
        viewport.panBy(viewport.toDrawing(pointOf(*m_panFrom)) - viewport.toDrawing(pointOf(point)));
        m_panFrom = point;
    }
    m_crosshair = point;
    m_editor.setCursor(viewport.toDrawing(pointOf(point)));
    Invalidate(FALSE);
    // The status bar shows the coordinates.
    if (CFrameWnd* const frame = GetParentFrame()) {
        if (CControlBar* const bar = frame->GetControlBar(AFX_IDW_STATUS_BAR)) {
            bar->Invalidate(FALSE);
        }
    }
}

BOOL DrawingView::OnMouseWheel(UINT, short delta, CPoint point) {
    ScreenToClient(&point);
    m_editor.viewport().zoomAt(pointOf(point),
                               std::pow(kZoomPerNotch, static_cast<double>(delta) / WHEEL_DELTA));
    m_editor.setCursor(m_editor.viewport().toDrawing(pointOf(point)));
    Invalidate(FALSE);
    return TRUE;
}

BOOL DrawingView::OnSetCursor(CWnd* window, UINT hitTest, UINT message) {
    if (hitTest != HTCLIENT) {
        return CView::OnSetCursor(window, hitTest, message);
    }
    // No mouse cursor: the crosshair is painted with the drawing.
    ::SetCursor(nullptr);
    return TRUE;
}

void DrawingView::OnChar(UINT character, UINT, UINT) {
    m_keys.character(character);
}

void DrawingView::OnKeyDown(UINT key, UINT repeats, UINT flags) {
    if (!m_keys.key(key)) {
        CView::OnKeyDown(key, repeats, flags);
    }
}

}  // namespace cad
