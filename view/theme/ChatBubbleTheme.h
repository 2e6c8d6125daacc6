#pragma once

#include <QColor>

/// Colours and icons of the chat bubbles in one theme. Bubbles paint themselves and have no style sheet.
struct ChatBubbleTheme {
    QColor text;
    QColor questionFill;
    QColor link;
    // Paths in the resource set.
    const char* copyIcon = nullptr;
    const char* regenerateIcon = nullptr;
    const char* editIcon = nullptr;

    /// Every value other than kDarkTheme is light.
    static const ChatBubbleTheme& of(int theme);
};
