#include "view/bubble/ChatBubbleRects.h"

#include <algorithm>

namespace {

// All of these are fixed distances of the look, in pixels.
constexpr int kFrameMargins = 150;
constexpr int kTextMargins = 174;
constexpr int kIconLeft = 20;
constexpr int kIconRightInset = 60;
constexpr int kIconTop = 10;
constexpr int kIconSize = 40;
constexpr int kMinTextHeight = 30;
constexpr int kTriangleLeft = 65;
constexpr int kTriangleWidth = 6;
constexpr int kTriangleRightInset = 71;
constexpr int kFrameLeft = kTriangleLeft + kTriangleWidth;
constexpr int kFullFrameRightLeft = 79;
constexpr int kFrameRightInset = 50;
constexpr int kTextPaddingX = 12;
constexpr int kTextPaddingY = 10;
constexpr int kButtonGap = 20;
constexpr int kButtonSize = 20;
constexpr int kSecondButton = 25;
constexpr int kButtonRow = 40;

QRect button(const QRect& text, int offset) {
    return {text.x() + offset, text.bottom() + kButtonGap, kButtonSize, kButtonSize};
}

}  // namespace

void ChatBubbleRects::setWidth(int width) {
    bubbleWidth = width - kFrameMargins;
    textWidth = width - kTextMargins;
    spaceWidth = width - textWidth;
}

QSize ChatBubbleRects::place(const QSize& measured) {
    const int width = textWidth + spaceWidth;
    iconLeftRect = QRect(kIconLeft, kIconTop, kIconSize, kIconSize);
    iconRightRect = QRect(width - kIconRightInset, kIconTop, kIconSize, kIconSize);

    const int height = std::max(measured.height(), kMinTextHeight);
    const int frameHeight = height - lineHeight;
    triangleLeftRect = QRect(kTriangleLeft, lineHeight / 2, kTriangleWidth, frameHeight);
    triangleRightRect = QRect(width - kTriangleRightInset, lineHeight / 2, kTriangleWidth, frameHeight);

    const int top = lineHeight / 4 * 3;
    if (measured.width() >= width) {
        frameLeftRect = QRect(kFrameLeft, top, bubbleWidth, frameHeight);
        frameRightRect = QRect(kFullFrameRightLeft, top, bubbleWidth, frameHeight);
    } else {
        // A short question stands further right than a full-width one ends; the two are meant to differ.
        const int frameWidth = measured.width() - spaceWidth + 2 * kTextPaddingX;
        frameLeftRect = QRect(kFrameLeft, top, frameWidth, frameHeight);
        frameRightRect =
            QRect(width + spaceWidth - measured.width() - kFrameRightInset, top, frameWidth, frameHeight);
    }
    textLeftRect = frameLeftRect.adjusted(kTextPaddingX, kTextPaddingY, -kTextPaddingX, -kTextPaddingY);
    textRightRect = frameRightRect.adjusted(kTextPaddingX, kTextPaddingY, -kTextPaddingX, -kTextPaddingY);

    copyAnswerRect = button(textLeftRect, 0);
    regenRect = button(textLeftRect, kSecondButton);
    copyQuestionRect = button(textRightRect, 0);
    editRect = button(textRightRect, kSecondButton);
    return {measured.width(), height + kButtonRow};
}
