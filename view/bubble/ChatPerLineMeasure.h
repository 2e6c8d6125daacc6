#pragma once

#include <QString>

#include "view/bubble/ChatLineScanner.h"
#include "view/bubble/ChatLineWrap.h"

/// The rule for a text with line breaks: each line is wrapped character by character at the wrap width.
///
/// Keeps its state between calls: for appended text, measuring continues where it stopped.
class ChatPerLineMeasure {
public:
    ChatPerLineMeasure() = default;
    explicit ChatPerLineMeasure(const ChatLineWrap& wrap) : m_wrap(wrap) {}

    /// Measures the text, which must begin with the text of the previous call and contains `lineBreaks` line
    /// breaks. The block counts line breaks and breaks added by wrapping. `trace` writes long lines to Qt's
    /// debug output.
    ChatTextBlock measure(const QString& text, int lineBreaks, bool trace);

private:
    ChatLineWrap m_wrap;
    ChatTextBlock m_completeLines;  ///< widest line, and breaks added by wrapping, of all lines but the last
    int m_lastStart = 0;            ///< of the last line
    int m_lastBreaks = 0;
    ChatLineScanner::Line m_lastRow;
};
