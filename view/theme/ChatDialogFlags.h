#pragma once

#include <Qt>

/// Window flags that the dialogs of the chat add to their own: a window that stays on top of the others.
/// SplashScreen has every window-type bit set, so it overrides Dialog.
constexpr Qt::WindowFlags kChatDialogFlags = Qt::SplashScreen | Qt::WindowStaysOnTopHint;
