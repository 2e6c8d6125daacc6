#pragma once

#include <QFont>
#include <QSize>
#include <QString>
#include <memory>

#include "view/bubble/ChatLineWrap.h"
#include "view/bubble/ChatPerLineMeasure.h"
#include "view/bubble/ChatSingleLineMeasure.h"

/// Measures the text of a bubble: a text with line breaks by ChatPerLineMeasure, any other by
/// ChatSingleLineMeasure. Remembers the last text; for a longer one that begins with it, measuring continues
/// where it stopped. Long lines are traced to Qt's debug output when a text is measured from its start. UI
/// thread.
class ChatTextMeasure {
public:
    /// Size of the measured text, in pixels, for text that wraps at `textWidth` and has `spaceWidth` beside
    /// it. ChatBubbleHeight defines the height. A text width of zero or less gives a size without room for
    /// text.
    QSize measureText(const QString& text, const QFont& font, int textWidth, int spaceWidth);

    /// Line spacing of the font measured last, in whole pixels.
    int lineHeight() const { return m_wrap.lineHeight(); }

private:
    void reset(const QFont& font, int textWidth);

    QFont m_font;
    std::shared_ptr<ChatAdvanceTable> m_table;
    ChatLineWrap m_wrap;
    QString m_text;
    int m_lineBreaks = 0;
    ChatPerLineMeasure m_perLine;
    ChatSingleLineMeasure m_singleLine;
};
