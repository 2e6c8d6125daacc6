#include "view/bubble/ChatSingleLineMeasure.h"

#include <QDebug>
#include <algorithm>
#include <limits>

#include "view/bubble/ChatBubbleHeight.h"

namespace {

// The width of the head of the text is extended in steps of this many characters.
constexpr int kWidthStep = 256;
// The widths left and right of a cut add up if they do for this many characters on either side.
constexpr int kCutNeighbours = 4;

}  // namespace

ChatTextBlock ChatSingleLineMeasure::measure(const QString& text, bool trace) {
    m_text = text;
    const qreal width = textWidth();
    if (!(static_cast<int>(width) > m_wrap.width())) {
        return {static_cast<int>(width), 0};
    }
    const int rows = m_wrap.width() != 0 ? static_cast<int>(width / m_wrap.width()) : 0;
    if (trace) {
        qDebug() << "fixC0" << 0 << "|" << rows << "|" << m_text;
    }
    return {m_wrap.width(), rows + measurePieces(rows, trace)};
}

/// Measures one piece per row and returns the breaks of all pieces.
qint64 ChatSingleLineMeasure::measurePieces(int rows, bool trace) {
    const qreal space = m_wrap.table().metrics().horizontalAdvance(QLatin1String(" "));
    const int charactersPerRow = space > 0 ? static_cast<int>(m_wrap.width() / space) : m_text.size();
    m_nextRow.resize(static_cast<std::size_t>(m_text.size()), 0);
    if (m_pieces.size() > static_cast<std::size_t>(std::max(rows, 0))) {
        m_pieces.clear();
        m_completePieces = 0;
        m_completeBreaks = 0;
    }
    const qint64 maxBreaks = ChatBubbleHeight::maxBreaks(m_wrap.lineHeight());
    qint64 breaks = m_completeBreaks;
    for (auto i = static_cast<qint64>(m_completePieces); i < rows && breaks + rows <= maxBreaks; ++i) {
        const qint64 begin = i * charactersPerRow;
        if (charactersPerRow == 0 || begin >= m_text.size()) {
            break;
        }
        if (m_pieces.size() <= static_cast<std::size_t>(i)) {
            Piece piece;
            piece.begin = piece.lastRow = static_cast<int>(begin);
            piece.end = static_cast<int>(
                std::min<qint64>(begin + (i + 1) * charactersPerRow, std::numeric_limits<int>::max()));
            m_pieces.push_back(piece);
        }
        Piece& piece = m_pieces[static_cast<std::size_t>(i)];
        breakPiece(piece);
        const int end = std::min(piece.end, m_text.size());
        breaks += m_wrap.lineBlock(m_text, piece.begin, end, piece.breaks).breaks;
        if (piece.end <= m_text.size() && m_completePieces == static_cast<std::size_t>(i)) {
            m_completeBreaks = breaks;
            ++m_completePieces;
        }
        if (trace) {
            tracePiece(piece, end, rows + breaks);
        }
    }
    return breaks;
}

void ChatSingleLineMeasure::breakPiece(Piece& piece) {
    const int maxBreaks = ChatBubbleHeight::maxBreaks(m_wrap.lineHeight());
    while (piece.breaks <= maxBreaks) {
        const int next = nextRow(piece.lastRow);
        if (next < 0 || next >= piece.end) {
            break;
        }
        piece.lastRow = next;
        ++piece.breaks;
    }
}

/// Start of the row after the one that starts at `start`, or -1 if the text ends before that row is full.
int ChatSingleLineMeasure::nextRow(int start) {
    int& next = m_nextRow[static_cast<std::size_t>(start)];
    if (next == 0) {
        auto row = m_openRows.find(start);
        if (row == m_openRows.end()) {
            row = m_openRows.insert(start, ChatLineScanner::lineAt(start));
        }
        const int at = m_wrap.scanner().fill(m_text, *row, m_text.size());
        if (at < 0) {
            return -1;
        }
        m_openRows.erase(row);
        next = at;
    }
    return next;
}

void ChatSingleLineMeasure::tracePiece(const Piece& piece, int end, qint64 total) {
    std::vector<int> breaks;
    for (int at = nextRow(piece.begin); at >= 0 && at < end; at = nextRow(at)) {
        breaks.push_back(at);
    }
    m_wrap.trace(m_text, piece.begin, end, breaks, total);
}

qreal ChatSingleLineMeasure::textWidth() {
    updateDirection();
    while (!m_turnsDirection && m_text.size() - m_headEnd > 2 * kWidthStep) {
        int cut = m_headEnd + kWidthStep;
        const int last = m_text.size() - kCutNeighbours;
        while (cut < last && !widthsAddUpAt(cut)) {
            ++cut;
        }
        if (cut >= last) {
            break;
        }
        m_headWidth += m_wrap.table().exactWidth(m_text, m_headEnd, cut);
        m_headEnd = cut;
    }
    return m_headWidth + m_wrap.table().exactWidth(m_text, m_headEnd, m_text.size());
}

void ChatSingleLineMeasure::updateDirection() {
    while (!m_turnsDirection && m_directionChecked < m_text.size()) {
        const QChar unit = m_text[m_directionChecked];
        const bool isLast = m_directionChecked + 1 == m_text.size();
        if (unit.isHighSurrogate() && isLast) {
            // The low surrogate may be part of the next call's text.
            break;
        }
        const QChar next = unit.isHighSurrogate() ? m_text[m_directionChecked + 1] : QChar();
        m_turnsDirection = ChatAdvanceTable::turnsDirection(
            next.isLowSurrogate() ? QChar::surrogateToUcs4(unit, next) : unit.unicode());
        ++m_directionChecked;
    }
    if (m_turnsDirection) {
        m_headEnd = 0;
        m_headWidth = 0;
    }
}

bool ChatSingleLineMeasure::widthsAddUpAt(int cut) const {
    const int from = cut - kCutNeighbours;
    const int to = cut + kCutNeighbours;
    for (int i = from; i < to; ++i) {
        if (!ChatAdvanceTable::isPlain(m_text[i])) {
            return false;
        }
    }
    // Widths are multiples of 1/64 pixel, so their sums are exact.
    const ChatAdvanceTable& table = m_wrap.table();
    return table.exactWidth(m_text, from, to) ==
           table.exactWidth(m_text, from, cut) + table.exactWidth(m_text, cut, to);
}
