#include "sim/cad/app/HostStatusBar.h"

#include <cmath>

#include "sim/cad/app/Theme.h"

namespace cad {

namespace {

constexpr int kHeight = 28;
constexpr int kStretched = 32767;
constexpr double kMargin = 10;
constexpr double kSwitchPadding = 8;
constexpr double kSwitchGap = 4;

}  // namespace

BEGIN_MESSAGE_MAP(HostStatusBar, CControlBar)
ON_WM_PAINT()
ON_WM_ERASEBKGND()
ON_WM_LBUTTONDOWN()
END_MESSAGE_MAP()

bool HostStatusBar::createIn(CFrameWnd& frame) {
    SetBarStyle(CBRS_BOTTOM);
    const CString className = AfxRegisterWndClass(0, ::LoadCursor(nullptr, IDC_ARROW));
    return CWnd::Create(className, _T("状态栏"), WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | CBRS_BOTTOM,
                        CRect(0, 0, 0, 0), &frame, AFX_IDW_STATUS_BAR) != FALSE;
}

CSize HostStatusBar::CalcFixedLayout(BOOL stretch, BOOL horizontal) {
    return CSize(stretch && horizontal ? kStretched : kHeight, kHeight);
}

std::vector<HostStatusBar::Switch> HostStatusBar::switches() const {
    const SystemVariables& variables = m_editor.variables();
    const bool light = variables.integer("COLORTHEME") == 1;
    return {{"GRIDMODE", "栅格", variables.integer("GRIDMODE") == 1, {}},
            {"ORTHOMODE", "正交", variables.integer("ORTHOMODE") == 1, {}},
            {"COLORTHEME", light ? "浅色" : "深色", false, {}}};
}

void HostStatusBar::OnPaint() {
    CPaintDC dc(this);
    CRect client;
    GetClientRect(&client);
    const double width = client.Width();
    const double height = client.Height();
    const auto canvas = makeCanvas(dc.GetSafeHdc());
    const Theme& theme = themeFor(m_editor.variables().integer("COLORTHEME"));
    canvas->fill({0, 0, width, height}, theme.frame);
    canvas->fill({0, 0, width, 1}, theme.border);
    const double top = std::floor((height - canvas->lineHeight(Font::Small)) / 2);
    canvas->text(kMargin, top, m_editor.format(m_editor.cursor()), Font::Small, theme.mutedText);

    m_switches = switches();
    double right = width - kMargin;
    for (auto item = m_switches.rbegin(); item != m_switches.rend(); ++item) {
        const double text = std::ceil(canvas->textWidth(item->text, Font::Small));
        item->area = {right - text - 2 * kSwitchPadding, 4, text + 2 * kSwitchPadding, height - 7};
        if (item->on) {
            canvas->fillRounded(item->area, 3, theme.accent, 0.18);
        }
        canvas->text(item->area.x + kSwitchPadding, top, item->text, Font::Small,
                     item->on ? theme.accent : theme.mutedText);
        right = item->area.x - kSwitchGap;
    }
}

BOOL HostStatusBar::OnEraseBkgnd(CDC*) {
    return TRUE;
}

void HostStatusBar::OnLButtonDown(UINT, CPoint point) {
    for (const Switch& item : m_switches) {
        if (point.x >= item.area.x && point.x < item.area.right()) {
            m_editor.variables().set(item.variable, 1 - m_editor.variables().integer(item.variable));
            m_editor.services().wake();
            return;
        }
    }
}

}  // namespace cad
