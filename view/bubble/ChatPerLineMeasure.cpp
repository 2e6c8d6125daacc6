#include "view/bubble/ChatPerLineMeasure.h"

#include <algorithm>
#include <vector>

ChatTextBlock ChatPerLineMeasure::measure(const QString& text, int lineBreaks, bool trace) {
    std::vector<int> tracedBreaks;
    ChatTextBlock block;
    for (;;) {
        const int lineBreak = text.indexOf(QLatin1Char('\n'), m_lastRow.accepted);
        const int end = lineBreak < 0 ? text.size() : lineBreak;
        for (int at = m_wrap.scanner().fill(text, m_lastRow, end); at >= 0;
             at = m_wrap.scanner().fill(text, m_lastRow, end)) {
            ++m_lastBreaks;
            m_lastRow = ChatLineScanner::lineAt(at);
            if (trace) {
                tracedBreaks.push_back(at);
            }
        }
        block = m_wrap.lineBlock(text, m_lastStart, end, m_lastBreaks);
        block.width = std::max(block.width, m_completeLines.width);
        block.breaks += m_completeLines.breaks;
        if (trace) {
            m_wrap.trace(text, m_lastStart, end, tracedBreaks, lineBreaks + block.breaks);
            tracedBreaks.clear();
        }
        if (lineBreak < 0) {
            break;
        }
        m_completeLines = block;
        m_lastStart = lineBreak + 1;
        m_lastBreaks = 0;
        m_lastRow = ChatLineScanner::lineAt(m_lastStart);
    }
    // A wrap width of zero or less is also the width of the block.
    return {std::min(block.width, m_wrap.width()), block.breaks + lineBreaks};
}
