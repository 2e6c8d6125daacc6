#include "view/theme/ChatBubbleTheme.h"

#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

ChatBubbleTheme lightTheme() {
    ChatBubbleTheme theme;
    theme.text = QColor(51, 51, 51);
    theme.questionFill = QColor(229, 246, 254);
    theme.link = QColor(0, 0, 255);
    theme.copyIcon = ":/res/img/ChatCopy.png";
    theme.regenerateIcon = ":/res/img/ChatRegen.png";
    theme.editIcon = ":/res/img/ChatEdit.png";
    return theme;
}

ChatBubbleTheme darkTheme() {
    ChatBubbleTheme theme;
    theme.text = QColor(229, 246, 254);
    theme.questionFill = QColor(51, 51, 51);
    theme.link = QColor(128, 186, 245);
    theme.copyIcon = ":/res/img/ChatCopy-Dark.png";
    theme.regenerateIcon = ":/res/img/ChatRegen-Dark.png";
    theme.editIcon = ":/res/img/ChatEdit-Dark.png";
    return theme;
}

}  // namespace

const ChatBubbleTheme& ChatBubbleTheme::of(int theme) {
    static const ChatBubbleTheme light = lightTheme();
    static const ChatBubbleTheme dark = darkTheme();
    return theme == kDarkTheme ? dark : light;
}
