#include "view/bubble/ChatLineWrap.h"

#include <QDebug>
#include <utility>

ChatLineWrap::ChatLineWrap(std::shared_ptr<ChatAdvanceTable> table, int width)
    : m_table(std::move(table)),
      m_scanner(m_table, ChatLineScanner::Use::Measuring, width),
      m_width(width),
      m_lineHeight(static_cast<int>(m_table->metrics().lineSpacing())) {}

ChatTextBlock ChatLineWrap::lineBlock(const QString& text, int begin, int end, int breaks) const {
    // A line with one break may still fit as a whole, because later characters can narrow earlier ones. A
    // line with two breaks never does.
    if (breaks < 2) {
        const qreal width = m_table->exactWidth(text, begin, end);
        if (!(width > m_width)) {
            return {static_cast<int>(width), 0};
        }
    }
    return {m_width, breaks};
}

void ChatLineWrap::trace(const QString& text, int begin, int end, const std::vector<int>& breaks,
                         qint64 total) const {
    const QString line = text.mid(begin, end - begin);
    if (!(m_table->exactWidth(line, 0, line.size()) > m_width)) {
        return;
    }
    QString wrapped;
    int from = begin;
    for (const int at : breaks) {
        wrapped += text.midRef(from, at - from) + QLatin1Char('\n');
        from = at;
    }
    wrapped += text.midRef(from, end - from);
    qDebug() << "fixC1" << total << "|" << breaks.size() << "|" << line << "|" << wrapped;
}
