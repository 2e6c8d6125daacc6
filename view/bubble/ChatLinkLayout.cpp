#include "view/bubble/ChatLinkLayout.h"

#include <QPainter>
#include <algorithm>

#include "view/bubble/ChatLineScanner.h"

namespace {

constexpr QChar kLinkBegin(u'【');
constexpr QChar kLinkEnd(u'】');
// How many cell heights a glyph may reach beyond its cell.
constexpr int kOverhang = 1;
// Cells are as wide as the character's advance; what a glyph has beyond it is not cut off.
constexpr int kCellFlags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip;

}  // namespace

void ChatLinkLayout::layOut(const QString& text, const QFont& font, const QRect& area) {
    if (m_table && area == m_area && text == m_text && font == m_font) {
        return;
    }
    m_text = text;
    m_font = font;
    m_area = area;
    m_table = ChatAdvanceTable::forFont(font);
    build();
}

std::vector<ChatLinkLayout::Range> ChatLinkLayout::findLinks(const QString& text) {
    std::vector<Range> links;
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

void ChatLinkLayout::build() {
    m_cells.clear();
    m_rows.clear();
    m_runs.clear();
    m_cellHeight = m_table->roundedMetrics().height();
    const int lineSpacing = m_table->roundedMetrics().lineSpacing();
    const ChatLineScanner scanner(m_table, ChatLineScanner::Use::Painting, m_area.width());
    const std::vector<Range> links = findLinks(m_text);

    auto link = links.cbegin();
    auto pendingLink = links.cend();
    ChatLinkRun pending;
    const auto finishPending = [&] {
        if (!pending.rect.isEmpty()) {
            m_runs.push_back(pending);
        }
        pending = ChatLinkRun();
        pendingLink = links.cend();
    };

    int x = m_area.left();
    int y = m_area.top();
    m_rows.push_back({y, 0});
    const auto startRow = [&] {
        x = m_area.left();
        y += lineSpacing;
        m_rows.push_back({y, m_cells.size()});
    };
    // Where the next row begins because this one is full; a paragraph's first row is looked at when it is
    // reached.
    int wrapAt = -1;
    int paragraphStart = 0;
    int paragraphEnd = 0;
    const auto fillRow = [&](int from) {
        ChatLineScanner::Line line = ChatLineScanner::lineAt(from);
        wrapAt = scanner.fill(m_text, line, paragraphEnd);
    };

    int length = 1;
    for (int k = 0; k < m_text.size(); k += length) {
        length = scanner.characterLength(m_text, k);
        if (m_text[k] == QLatin1Char('\n')) {
            startRow();
            finishPending();
            paragraphStart = k + 1;
            continue;
        }
        while (link != links.cend() && link->end <= k) {
            ++link;
        }
        const bool inLink = link != links.cend() && k >= link->begin;

        bool wraps = k == wrapAt;
        if (k == paragraphStart) {
            const int lineEnd = m_text.indexOf(QLatin1Char('\n'), k);
            paragraphEnd = lineEnd < 0 ? m_text.size() : lineEnd;
            // A row that is too narrow even for the first character is left empty.
            wraps = scanner.isTooWide(m_text, k, k + length);
            fillRow(k);
        }
        if (wraps) {
            startRow();
            fillRow(k);
            // A link goes on over the end of a row; one that ended before it does not.
            if (!inLink || pendingLink != link) {
                finishPending();
            }
        }
        const Cell cell{k, length, x, m_table->roundedWidth(m_text, k, k + length), inLink};
        if (inLink) {
            const QString command = m_text.mid(link->begin, link->end - link->begin);
            if (command != pending.command && !pending.rect.isEmpty()) {
                finishPending();
            }
            pending.rect |= QRect(cell.x, y, cell.width, m_cellHeight);
            pending.command = command;
            pendingLink = link;
        }
        m_cells.push_back(cell);
        x += cell.width;
    }
    finishPending();
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
