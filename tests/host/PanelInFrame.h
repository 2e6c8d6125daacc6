#pragma once

#include <afxext.h>
#include <afxwin.h>

#include <QWidget>
#include <QWindow>
#include <memory>

/// A visible frame with a menu and a panel, in which a Qt view is embedded as the module embeds its own.
template <class Frame>
struct PanelInFrame {
    PanelInFrame() : frame(new Frame) {
        frame->Create(nullptr, _T("Menu keys"), WS_OVERLAPPEDWINDOW, CRect(0, 0, 400, 300));
        CMenu menu;
        menu.CreateMenu();
        menu.AppendMenu(MF_STRING, 1, _T("&File"));
        frame->SetMenu(&menu);
        menu.Detach();
        frame->ShowWindow(SW_SHOW);
        panel.Create(AfxRegisterWndClass(0), _T("Panel"), WS_CHILD | WS_VISIBLE, CRect(0, 0, 300, 200), frame,
                     1);
        nativeParent.reset(QWindow::fromWinId(reinterpret_cast<WId>(panel.m_hWnd)));
    }
    ~PanelInFrame() {
        view.hide();
        view.windowHandle()->setParent(nullptr);
        panel.DestroyWindow();
        frame->DestroyWindow();
    }
    PanelInFrame(const PanelInFrame&) = delete;
    PanelInFrame& operator=(const PanelInFrame&) = delete;

    HWND viewHandle() const { return reinterpret_cast<HWND>(view.winId()); }

    void showView() {
        view.winId();
        view.windowHandle()->setParent(nativeParent.get());
        view.show();
    }

    /// Deletes itself with its window, as MFC's frames do.
    Frame* frame;
    CWnd panel;
    std::unique_ptr<QWindow> nativeParent;
    QWidget view;
};
