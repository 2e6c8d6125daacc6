#pragma once

// Linux only: connects Qt's xcb plugin with the slice's message loop, as Qt's Windows port is connected with
// that of Windows. The library registers itself when it is loaded; whoever links zentri_sdk_win32 gets it. It
// has no effect in a program that creates no QApplication.
//
// Simplified: of the messages to Qt's windows only keyboard messages and WM_CLOSE are translated to Qt
// events; pointer and expose events reach Qt directly from the X server. No input methods, no dead keys.

#include "qt_key_mapper.h"
#include "win32_foreign.h"

#include <QPointer>
#include <QWindow>

class QEvent;
class QPoint;

class QtBridge : public Win32ForeignToolkit {
public:
    static QtBridge& instance();

    /// Called when the application object is created and when it is destroyed.
    void attach();
    void detach();
    /// Called for the application's input and focus events; true keeps the event from its window.
    bool filterEvent(QWindow* window, QEvent* event);
    /// Called for every event from the X server before Qt processes it.
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
    /// The window that Qt must not activate for the click that it is about to receive.
    QPointer<QWindow> m_heldBack;
};
