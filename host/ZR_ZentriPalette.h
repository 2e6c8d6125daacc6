#pragma once

#include <AdUiPalette.h>
#include <afxwin.h>

#include <memory>

#include "host/core/ZR_ZentriPaletteAccess.h"

class QWindow;
class ZR_ZentriPaletteView;

/// The window of the host's palette set that is the native parent of the chat view. It resizes the view with
/// itself and forwards the keys, which the host's loop would otherwise keep. UI thread.
class ZR_ZentriPalette : public CAdUiPalette, public ZR_ZentriPaletteAccess {
    DECLARE_DYNAMIC(ZR_ZentriPalette)

public:
    /// Makes the chat view, not shown yet, and registers itself as the module's palette.
    ZR_ZentriPalette();
    ~ZR_ZentriPalette() override;

    ZR_AiChatViewInterface* chatView() override;
    void setColorTheme(int theme) override;
    void takeKeyboardFocus() override;

    BOOL OnSetActive() override;
    BOOL CanFrameworkTakeFocus() override;
    BOOL PreTranslateMessage(MSG* message) override;

protected:
    afx_msg int OnCreate(LPCREATESTRUCT creation);
    afx_msg void OnDestroy();
    afx_msg void OnSize(UINT type, int width, int height);
    afx_msg void OnSizing(UINT side, LPRECT rect);
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    afx_msg void OnKillFocus(CWnd* newFocus);
    DECLARE_MESSAGE_MAP()

private:
    /// Puts the view into the palette's window and gives it its size.
    void embedView();
    void placeView();
    /// Sends the character to the view.
    void typeIntoView(const MSG& character);
    /// Types the characters that wait for this window, which belong to keys pressed before. On each key that
    /// goes down Qt takes the next WM_CHAR of the queue for that key's own, and it would be lost.
    void typeWaitingCharacters();
    /// Sends a copy of the key message to the view, unless the message is on its way there anyhow.
    void forwardToView(const MSG& message);
    HWND viewHandle() const;

    /// The palette's own window as Qt sees it; the view's native parent. Declared before the view, so that it
    /// is destroyed after it.
    std::unique_ptr<QWindow> m_nativeParent;
    std::unique_ptr<ZR_ZentriPaletteView> m_view;
};
