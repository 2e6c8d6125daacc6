#pragma once

#include <QString>
#include <QtGlobal>
#include <memory>
#include <vector>

#include "view/bubble/ChatAdvanceTable.h"
#include "view/bubble/ChatLineScanner.h"

/// A measured block of text.
struct ChatTextBlock {
    int width = 0;
    qint64 breaks = 0;  ///< number of rows after the first
};

/// Wraps lines at a width in a font, for measuring. Shared by the rules of ChatTextMeasure. UI thread.
class ChatLineWrap {
public:
    /// Unusable until assigned.
    ChatLineWrap() = default;
    ChatLineWrap(std::shared_ptr<ChatAdvanceTable> table, int width);

    int width() const { return m_width; }
    /// Line spacing of the font in whole pixels.
    int lineHeight() const { return m_lineHeight; }
    const ChatAdvanceTable& table() const { return *m_table; }
    const ChatLineScanner& scanner() const { return m_scanner; }

    /// The block that the line [begin, end) of the text takes when it has to be broken `breaks` times.
    ChatTextBlock lineBlock(const QString& text, int begin, int end, int breaks) const;

    /// Traces the line [begin, end) if it is wider than the wrap width. `breaks` are the indexes at which its
    /// rows after the first start, `total` is the number of breaks of the text so far.
    void trace(const QString& text, int begin, int end, const std::vector<int>& breaks, qint64 total) const;

private:
    std::shared_ptr<ChatAdvanceTable> m_table;
    ChatLineScanner m_scanner;
    int m_width = 0;
    int m_lineHeight = 0;
};
