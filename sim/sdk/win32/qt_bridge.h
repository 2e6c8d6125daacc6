#pragma once

// Linux only: what Qt's Windows port does between Qt and the message loop, done between Qt's X11 port and the
// slice. The library registers itself when it is loaded, and everybody who links zentri_sdk_win32 gets it; a
// program that never makes a QApplication does not notice it.
//
// Simplified: of the messages sent to Qt's windows only those of the keyboard (and WM_CLOSE) mean something
// to Qt; pointer and paint events come to Qt from the X server, and input methods and dead keys are not
// covered.

#include "qt_key_mapper.h"
#include "win32_foreign.h"

#include <QPointer>
#include <QWindow>

class QEvent;
class QPoint;

class QtBridge : public Win32ForeignToolkit {
public:
    static QtBridge& instance();

    /// Called when the application object is made, and when it goes.
    void attach();
    void detach();
    /// Sees every event of the application; true takes it away from its window.
    bool filterEvent(QWindow* window, QEvent* event);
    /// Sees every event of the X server before Qt does.
    void filterServerEvent(const void* event);

    bool owns(HWND window) override;
    HWND parent(HWND window) override;
    bool rectangle(HWND window, RECT& screen) override;
    LRESULT deliver(const MSG& message) override;
    void focusChanged(HWND window, bool focused) override;
    void dispatchInForeignLoop(MSG& message) override;
    void quitForeignLoop() override;
    void aboutToWait() override;

private:
    void pressed(QWindow* window, const QPoint& position);
    void letActivate();
    void followFocusLater();
    void followFocus();

    QtKeyMapper m_keys;
    bool m_followQueued = false;
    /// The window that Qt must not make active because of the click it is about to see.
    QPointer<QWindow> m_heldBack;
};
