#include "sim/cad/app/CommandWindow.h"

#include <algorithm>

namespace cad {

namespace {

constexpr int kHistoryRows = 5;
constexpr int kStretched = 32767;
constexpr int kRowsPerNotch = 3;
constexpr UINT_PTR kCaretTimer = 1;
constexpr UINT kCaretMilliseconds = 530;

}  // namespace

BEGIN_MESSAGE_MAP(CommandWindow, CControlBar)
ON_WM_PAINT()
ON_WM_ERASEBKGND()
ON_WM_TIMER()
ON_WM_LBUTTONDOWN()
ON_WM_MOUSEWHEEL()
ON_WM_CHAR()
ON_WM_KEYDOWN()
END_MESSAGE_MAP()

CommandWindow::CommandWindow(Editor& editor) : m_editor(editor), m_keys(editor) {}

bool CommandWindow::createIn(CFrameWnd& frame) {
    SetBarStyle(CBRS_BOTTOM);
    const CString className = AfxRegisterWndClass(0, ::LoadCursor(nullptr, IDC_IBEAM));
    if (!CWnd::Create(className, _T("命令行"), WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | CBRS_BOTTOM,
                      CRect(0, 0, 0, 0), &frame, kId)) {
        return false;
    }
    SetTimer(kCaretTimer, kCaretMilliseconds, nullptr);
    return true;
}

void CommandWindow::followText() {
    m_scrolledRows = 0;
    m_caretVisible = true;
    Invalidate(FALSE);
}

CSize CommandWindow::CalcFixedLayout(BOOL stretch, BOOL horizontal) {
    const int height = CommandLinePainter::heightForRows(kHistoryRows);
    return CSize(stretch && horizontal ? kStretched : height, height);
}

void CommandWindow::OnPaint() {
    CPaintDC dc(this);
    CRect client;
    GetClientRect(&client);
    const auto canvas = makeCanvas(dc.GetSafeHdc());
    m_painter.paint(*canvas, m_editor.commandLine(), themeFor(m_editor.variables().integer("COLORTHEME")),
                    {0, 0, static_cast<double>(client.Width()), static_cast<double>(client.Height())},
                    m_scrolledRows, m_caretVisible && takesKeys());
}

bool CommandWindow::takesKeys() const {
    const CFrameWnd* const frame = GetParentFrame();
    const HWND focus = ::GetFocus();
    return focus != nullptr && (focus == GetSafeHwnd() || focus == frame->GetSafeHwnd() ||
                                focus == frame->GetActiveView()->GetSafeHwnd());
}

BOOL CommandWindow::OnEraseBkgnd(CDC*) {
    return TRUE;
}

void CommandWindow::OnTimer(UINT_PTR id) {
    if (id == kCaretTimer) {
        m_caretVisible = !m_caretVisible;
        Invalidate(FALSE);
    }
}

void CommandWindow::OnLButtonDown(UINT, CPoint) {
    GetParentFrame()->SetFocus();
}

BOOL CommandWindow::OnMouseWheel(UINT, short delta, CPoint) {
    m_scrolledRows =
        std::clamp(m_scrolledRows + kRowsPerNotch * delta / WHEEL_DELTA, 0, m_painter.largestScroll());
    Invalidate(FALSE);
    return TRUE;
}

void CommandWindow::OnChar(UINT character, UINT, UINT) {
    m_keys.character(character);
}

void CommandWindow::OnKeyDown(UINT key, UINT repeats, UINT flags) {
    if (!m_keys.key(key)) {
        CControlBar::OnKeyDown(key, repeats, flags);
    }
}

}  // namespace cad
