#include "view/bubble/ChatLinkLayout.h"

#include <QPainter>
#include <algorithm>

#include "view/bubble/ChatLineScanner.h"

namespace {

constexpr QChar kLinkBegin(u'【');
constexpr QChar kLinkEnd(u'】');
// How many cell heights a glyph may extend beyond its cell.
constexpr int kOverhang = 1;
// A cell is as wide as the character's advance; the glyph must not be clipped to it.
constexpr int kCellFlags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip;

/// The text between a pair of brackets, [begin, end).
struct LinkRange {
    int begin = 0;
    int end = 0;
};

std::vector<LinkRange> findLinks(const QString& text) {
    std::vector<LinkRange> links;
    int from = 0;
    for (;;) {
        const int open = text.indexOf(kLinkBegin, from);
        const int close = open < 0 ? -1 : text.indexOf(kLinkEnd, open + 1);
        if (close < 0) {
            return links;
        }
        links.push_back({open + 1, close});
        from = close + 1;
    }
}

}  // namespace

/// Fills the layout's cells, rows and runs, one character after the other.
class ChatLinkLayout::Builder {
public:
    explicit Builder(ChatLinkLayout& layout)
        : m_layout(layout),
          m_text(layout.m_text),
          m_scanner(layout.m_table, ChatLineScanner::Use::Painting, layout.m_area.width()),
          m_lineSpacing(layout.m_table->roundedMetrics().lineSpacing()),
          m_links(findLinks(m_text)),
          m_link(m_links.cbegin()),
          m_runLink(m_links.cend()),
          m_x(layout.m_area.left()),
          m_y(layout.m_area.top()) {
        m_layout.m_rows.push_back({m_y, 0});
    }

    void build() {
        int length = 1;
        for (int at = 0; at < m_text.size(); at += length) {
            length = m_scanner.characterLength(m_text, at);
            if (m_text[at] == QLatin1Char('\n')) {
                startRow();
                finishRun();
                m_paragraphStart = at + 1;
                continue;
            }
            while (m_link != m_links.cend() && m_link->end <= at) {
                ++m_link;
            }
            const bool inLink = m_link != m_links.cend() && at >= m_link->begin;
            if (at == m_paragraphStart) {
                startParagraph(at);
            }
            if (wrapsBefore(at, length)) {
                startRow();
                fillRow(at);
                // A link continues after the end of a row only if it has begun before it.
                if (!inLink || m_runLink != m_link) {
                    finishRun();
                }
            }
            appendCell(at, length, inLink);
        }
        finishRun();
    }

private:
    void startRow() {
        m_x = m_layout.m_area.left();
        m_y += m_lineSpacing;
        m_layout.m_rows.push_back({m_y, m_layout.m_cells.size()});
    }

    /// Finds where the row that starts at the character is full.
    void fillRow(int from) {
        ChatLineScanner::Line line = ChatLineScanner::lineAt(from);
        m_wrapAt = m_scanner.fill(m_text, line, m_paragraphEnd);
    }

    void startParagraph(int at) {
        const int lineBreak = m_text.indexOf(QLatin1Char('\n'), at);
        m_paragraphEnd = lineBreak < 0 ? m_text.size() : lineBreak;
        fillRow(at);
    }

    bool wrapsBefore(int at, int length) const {
        // In an area that is too narrow for a paragraph's first character, its first row stays empty.
        return at == m_paragraphStart ? m_scanner.isTooWide(m_text, at, at + length) : at == m_wrapAt;
    }

    void appendCell(int at, int length, bool inLink) {
        const int width = m_layout.m_table->roundedWidth(m_text, at, at + length);
        if (inLink) {
            extendRun(QRect(m_x, m_y, width, m_layout.m_cellHeight));
        }
        m_layout.m_cells.push_back({at, length, m_x, width, inLink});
        m_x += width;
    }

    void extendRun(const QRect& rect) {
        const QString command = m_text.mid(m_link->begin, m_link->end - m_link->begin);
        if (command != m_run.command && !m_run.rect.isEmpty()) {
            finishRun();
        }
        m_run.rect |= rect;
        m_run.command = command;
        m_runLink = m_link;
    }

    void finishRun() {
        if (!m_run.rect.isEmpty()) {
            m_layout.m_runs.push_back(m_run);
        }
        m_run = ChatLinkRun();
        m_runLink = m_links.cend();
    }

    ChatLinkLayout& m_layout;
    const QString& m_text;
    const ChatLineScanner m_scanner;
    const int m_lineSpacing;
    const std::vector<LinkRange> m_links;
    std::vector<LinkRange>::const_iterator m_link;  // the first that ends after the current character

    // The run that is being extended and the link that its last character belongs to.
    ChatLinkRun m_run;
    std::vector<LinkRange>::const_iterator m_runLink;

    int m_x;
    int m_y;
    int m_wrapAt = -1;  // where the row after the current one starts; -1 if the paragraph ends before
    int m_paragraphStart = 0;
    int m_paragraphEnd = 0;
};

void ChatLinkLayout::layOut(const QString& text, const QFont& font, const QRect& area) {
    if (m_table && area == m_area && text == m_text && font == m_font) {
        return;
    }
    m_text = text;
    m_font = font;
    m_area = area;
    m_table = ChatAdvanceTable::forFont(font);
    m_cellHeight = m_table->roundedMetrics().height();
    m_cells.clear();
    m_rows.clear();
    m_runs.clear();
    Builder(*this).build();
}

void ChatLinkLayout::paint(QPainter& painter, const QColor& linkColor, const QRect& exposed) const {
    const int reach = m_cellHeight * kOverhang;
    const auto first = std::partition_point(m_rows.cbegin(), m_rows.cend(), [&](const Row& row) {
        return row.y + m_cellHeight + reach < exposed.top();
    });
    for (auto row = first; row != m_rows.cend() && row->y - reach <= exposed.bottom(); ++row) {
        paintRow(painter, static_cast<std::size_t>(row - m_rows.cbegin()), linkColor);
    }
}

void ChatLinkLayout::paintRow(QPainter& painter, std::size_t row, const QColor& linkColor) const {
    const std::size_t end = row + 1 < m_rows.size() ? m_rows[row + 1].firstCell : m_cells.size();
    QFont underlined = m_font;
    underlined.setUnderline(true);
    for (std::size_t i = m_rows[row].firstCell; i < end; ++i) {
        const Cell& cell = m_cells[i];
        const QRect rect(cell.x, m_rows[row].y, cell.width, m_cellHeight);
        const QString character = m_text.mid(cell.index, cell.length);
        if (cell.link) {
            painter.save();
            painter.setPen(linkColor);
            painter.setFont(underlined);
            painter.drawText(rect, kCellFlags, character);
            painter.restore();
        } else {
            painter.drawText(rect, kCellFlags, character);
        }
    }
}
