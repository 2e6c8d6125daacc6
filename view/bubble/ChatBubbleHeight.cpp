#include "view/bubble/ChatBubbleHeight.h"

#include <QWidget>
#include <algorithm>

int ChatBubbleHeight::ofMeasuredText(qint64 breaks, int lineHeight) {
    const qint64 height = (breaks + kSpareRows) * lineHeight;
    return static_cast<int>(std::min<qint64>(height, QWIDGETSIZE_MAX));
}

int ChatBubbleHeight::maxBreaks(int lineHeight) {
    return QWIDGETSIZE_MAX / std::max(lineHeight, 1);
}

ChatBubbleHeight::ChatBubbleHeight(int measuredText, int lineHeight) {
    const int textBlock = std::max(measuredText, kMinTextBlock);
    frame = textBlock - lineHeight;
    bubble = textBlock + kButtonRow;
}
