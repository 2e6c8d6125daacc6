#include "view/bubble/ChatBubbleRects.h"

#include "view/bubble/ChatBubbleHeight.h"

namespace {

// All distances are pixels.
constexpr int kFrameMargins = 150;
constexpr int kTextMargins = 174;
constexpr int kIconLeft = 20;
constexpr int kIconRightInset = 60;
constexpr int kIconTop = 10;
constexpr int kIconSize = 40;
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
    const ChatBubbleHeight height(measured.height(), lineHeight);
    const int width = textWidth + spaceWidth;
    iconLeftRect = QRect(kIconLeft, kIconTop, kIconSize, kIconSize);
    iconRightRect = QRect(width - kIconRightInset, kIconTop, kIconSize, kIconSize);
    triangleLeftRect = QRect(kTriangleLeft, lineHeight / 2, kTriangleWidth, height.frame);
    triangleRightRect = QRect(width - kTriangleRightInset, lineHeight / 2, kTriangleWidth, height.frame);

    const int top = lineHeight / 4 * 3;
    if (measured.width() >= width) {
        frameLeftRect = QRect(kFrameLeft, top, bubbleWidth, height.frame);
        frameRightRect = QRect(kFullFrameRightLeft, top, bubbleWidth, height.frame);
    } else {
        // The frame of a short question ends further right than a full-width one. The difference is intended.
        const int frameWidth = measured.width() - spaceWidth + 2 * kTextPaddingX;
        frameLeftRect = QRect(kFrameLeft, top, frameWidth, height.frame);
        frameRightRect =
            QRect(width + spaceWidth - measured.width() - kFrameRightInset, top, frameWidth, height.frame);
    }
    textLeftRect = frameLeftRect.adjusted(kTextPaddingX, kTextPaddingY, -kTextPaddingX, -kTextPaddingY);
    textRightRect = frameRightRect.adjusted(kTextPaddingX, kTextPaddingY, -kTextPaddingX, -kTextPaddingY);

    copyAnswerRect = button(textLeftRect, 0);
    regenRect = button(textLeftRect, kSecondButton);
    copyQuestionRect = button(textRightRect, 0);
    editRect = button(textRightRect, kSecondButton);
    return {measured.width(), height.bubble};
}
