#pragma once

#include <AdUiPalette.h>
#include <afxwin.h>

#include <memory>
#include <utility>

#include "host/core/ZR_ZentriPaletteAccess.h"

class QWindow;
class ZR_ZentriPaletteView;

/// The window in the host's palette set that is the native parent of the chat view. It keeps the view at its
/// own size and forwards key messages, which the host's message loop would otherwise swallow. UI thread.
class ZR_ZentriPalette : public CAdUiPalette, public ZR_ZentriPaletteAccess {
    DECLARE_DYNAMIC(ZR_ZentriPalette)

public:
    /// WM_ACAD_KEEPFOCUS. The host sends it before it takes the focus back because the mouse moves over the
    /// drawing; the answer TRUE keeps the focus.
    static constexpr UINT kKeepFocusMessage = 1001;

    /// Creates the chat view, not shown yet, and registers itself as the module's palette.
    ZR_ZentriPalette();
    ~ZR_ZentriPalette() override;

    ZR_AiChatViewInterface* chatView() override;
    void setColorTheme(int theme) override;
    void takeKeyboardFocus() override;

    /// bool or BOOL, depending on the release of the SDK.
    using FocusAnswer = decltype(std::declval<CAdUiPalette&>().CanFrameworkTakeFocus());
    FocusAnswer CanFrameworkTakeFocus() override;
    BOOL PreTranslateMessage(MSG* message) override;

protected:
    afx_msg int OnCreate(LPCREATESTRUCT creation);
    afx_msg void OnDestroy();
    afx_msg void OnSize(UINT type, int width, int height);
    /// Part of the interface; does nothing.
    afx_msg void OnSizing(UINT side, LPRECT rect);
    /// Part of the interface; forwards to the base class.
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    afx_msg void OnKillFocus(CWnd* newFocus);
    /// TRUE while the input box or the search box has the focus.
    afx_msg LRESULT OnAcadKeepFocus(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    /// Embeds the view in the palette's window and resizes it to fit.
    void embedView();
    void placeView();
    /// Sends the character to the view.
    void typeIntoView(const MSG& character);
    /// Sends the view the characters queued for this window, which belong to keys pressed before. On a key
    /// down Qt removes the next WM_CHAR from the queue as that key's own, and it would be lost.
    void typeQueuedCharacters();
    /// Sends a copy of the key message to the view, unless the message is for the view anyway.
    void forwardToView(const MSG& message);
    HWND viewHandle() const;

    /// The palette's window as a foreign QWindow, the view's native parent. Declared before the view, so that
    /// it is destroyed after it.
    std::unique_ptr<QWindow> m_nativeParent;
    std::unique_ptr<ZR_ZentriPaletteView> m_view;
};
