#include "view/bubble/ChatTextMeasure.h"

#include <QLoggingCategory>
#include <algorithm>

#include "view/bubble/ChatBubbleHeight.h"

QSize ChatTextMeasure::measureText(const QString& text, const QFont& font, int textWidth, int spaceWidth) {
    const bool isContinued = m_table && textWidth == m_wrap.width() && font == m_font && !m_text.isEmpty() &&
                             text.startsWith(m_text);
    if (!isContinued) {
        reset(font, textWidth);
    }
    m_lineBreaks +=
        static_cast<int>(std::count(text.cbegin() + m_text.size(), text.cend(), QLatin1Char('\n')));
    m_text = text;

    const bool trace = !isContinued && QLoggingCategory::defaultCategory()->isDebugEnabled();
    const ChatTextBlock block = m_lineBreaks == 0 ? m_singleLine.measure(m_text, trace)
                                                  : m_perLine.measure(m_text, m_lineBreaks, trace);
    return {spaceWidth + block.width, ChatBubbleHeight::ofMeasuredText(block.breaks, m_wrap.lineHeight())};
}

void ChatTextMeasure::reset(const QFont& font, int textWidth) {
    if (!m_table || !(font == m_font)) {
        m_table = ChatAdvanceTable::forFont(font);
        m_font = font;
    }
    m_wrap = ChatLineWrap(m_table, textWidth);
    m_text.clear();
    m_lineBreaks = 0;
    m_perLine = ChatPerLineMeasure(m_wrap);
    m_singleLine = ChatSingleLineMeasure(m_wrap);
}
