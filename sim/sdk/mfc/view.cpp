#include "afxwin.h"

IMPLEMENT_DYNAMIC(CView, CWnd)

BEGIN_MESSAGE_MAP(CView, CWnd)
ON_WM_PAINT()
ON_WM_DESTROY()
END_MESSAGE_MAP()

CView::~CView() = default;

void CView::OnDraw(CDC* /*dc*/) {}
void CView::OnActivateView(BOOL /*activate*/, CView* /*activateView*/, CView* /*deactiveView*/) {}
void CView::PostNcDestroy() {
    delete this;
}

void CView::OnPaint() {
    CPaintDC dc(this);
    OnDraw(&dc);
}

void CView::OnDestroy() {
    CFrameWnd* const frame = GetParentFrame();
    if (frame != nullptr && frame->GetActiveView() == this) {
        frame->SetActiveView(nullptr);
    }
    CWnd::OnDestroy();
}
