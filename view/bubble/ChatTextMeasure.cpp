#include "view/bubble/ChatTextMeasure.h"

#include <QDebug>
#include <QLoggingCategory>
#include <QWidget>
#include <algorithm>
#include <limits>

namespace {

// Rows that stand under every text, whatever it holds.
constexpr int kSpareRows = 3;
// The width of a single line is kept up to a cut some characters before its end; it is moved on in steps.
constexpr int kWidthStep = 256;
// So many characters on either side show whether the widths left and right of a cut add up.
constexpr int kCutNeighbours = 4;

bool tracing() {
    return QLoggingCategory::defaultCategory()->isDebugEnabled();
}

}  // namespace

QSize ChatTextMeasure::measureText(const QString& text, const QFont& font, int textWidth, int spaceWidth) {
    const bool known =
        m_table && textWidth == m_textWidth && font == m_font && !m_text.isEmpty() && text.startsWith(m_text);
    if (!known) {
        reset(font, textWidth);
    }
    const int before = m_text.size();
    m_text = text;
    m_lineBreaks += static_cast<int>(std::count(text.cbegin() + before, text.cend(), QLatin1Char('\n')));

    const Block block = m_lineBreaks == 0 ? measureSingleLine(!known) : measureLines(!known);
    const qint64 height = (block.rows + kSpareRows) * m_lineHeight;
    return {spaceWidth + block.width, static_cast<int>(std::min<qint64>(height, QWIDGETSIZE_MAX))};
}

void ChatTextMeasure::reset(const QFont& font, int textWidth) {
    if (!m_table || !(font == m_font)) {
        m_table = ChatAdvanceTable::forFont(font);
        m_font = font;
    }
    m_textWidth = textWidth;
    m_lineHeight = static_cast<int>(m_table->metrics().lineSpacing());
    m_scanner = ChatLineScanner(m_table, ChatLineScanner::Use::Measuring, textWidth);
    m_text.clear();
    m_lineBreaks = 0;
    m_doneLines = Block();
    m_lastStart = 0;
    m_lastBreaks = 0;
    m_lastRow = ChatLineScanner::lineAt(0);
    m_widthEnd = 0;
    m_widthBefore = 0;
    m_directionSeen = 0;
    m_directionTurns = false;
    m_nextRow.clear();
    m_openRows.clear();
    m_pieces.clear();
    m_completeBreaks = 0;
    m_completePieces = 0;
}

ChatTextMeasure::Block ChatTextMeasure::measureLines(bool fresh) {
    const bool trace = fresh && tracing();
    std::vector<int> breaks;
    Block last;
    for (;;) {
        const int lineBreak = m_text.indexOf(QLatin1Char('\n'), m_lastRow.accepted);
        const int end = lineBreak < 0 ? m_text.size() : lineBreak;
        for (int at = m_scanner.fill(m_text, m_lastRow, end); at >= 0;
             at = m_scanner.fill(m_text, m_lastRow, end)) {
            ++m_lastBreaks;
            m_lastRow = ChatLineScanner::lineAt(at);
            if (trace) {
                breaks.push_back(at);
            }
        }
        last = lineBlock(m_lastStart, end, m_lastBreaks);
        last.width = std::max(last.width, m_doneLines.width);
        last.rows += m_doneLines.rows;
        if (trace) {
            traceLine(m_lastStart, end, m_lineBreaks + last.rows, breaks);
            breaks.clear();
        }
        if (lineBreak < 0) {
            break;
        }
        m_doneLines = last;
        m_lastStart = lineBreak + 1;
        m_lastBreaks = 0;
        m_lastRow = ChatLineScanner::lineAt(m_lastStart);
    }
    // No room at all makes the block's width that of the room, which is then negative.
    return {std::min(last.width, m_textWidth), last.rows + m_lineBreaks};
}

ChatTextMeasure::Block ChatTextMeasure::lineBlock(int begin, int end, int breaks) const {
    // A line that breaks once may still be narrow enough as a whole, where later characters pull earlier ones
    // together; a line that breaks twice cannot.
    if (breaks < 2) {
        const qreal width = m_table->exactWidth(m_text, begin, end);
        if (!(width > m_textWidth)) {
            return {static_cast<int>(width), 0};
        }
    }
    return {m_textWidth, breaks};
}

void ChatTextMeasure::traceLine(int begin, int end, qint64 rows, const std::vector<int>& breaks) const {
    const QString line = m_text.mid(begin, end - begin);
    if (!(m_table->exactWidth(line, 0, line.size()) > m_textWidth)) {
        return;
    }
    QString wrapped;
    int from = begin;
    for (const int at : breaks) {
        wrapped += m_text.midRef(from, at - from) + QLatin1Char('\n');
        from = at;
    }
    wrapped += m_text.midRef(from, end - from);
    qDebug() << "fixC1" << rows << "|" << breaks.size() << "|" << line << "|" << wrapped;
}

ChatTextMeasure::Block ChatTextMeasure::measureSingleLine(bool fresh) {
    const qreal width = singleLineWidth();
    if (!(static_cast<int>(width) > m_textWidth)) {
        return {static_cast<int>(width), 0};
    }
    const qreal space = m_table->metrics().horizontalAdvance(QLatin1String(" "));
    const int charactersPerRow = space > 0 ? static_cast<int>(m_textWidth / space) : m_text.size();
    const int rows = m_textWidth != 0 ? static_cast<int>(width / m_textWidth) : 0;
    const bool trace = fresh && tracing();
    if (trace) {
        qDebug() << "fixC0" << 0 << "|" << rows << "|" << m_text;
    }

    // Piece i begins at i times the row length and is i + 1 row lengths long: the pieces overlap and grow.
    // The heights of all answers rest on that, so it must stay.
    m_nextRow.resize(static_cast<std::size_t>(m_text.size()), 0);
    if (m_pieces.size() > static_cast<std::size_t>(std::max(rows, 0))) {
        m_pieces.clear();
        m_completePieces = 0;
        m_completeBreaks = 0;
    }
    const qint64 highest = QWIDGETSIZE_MAX / std::max(m_lineHeight, 1);
    qint64 breaks = m_completeBreaks;
    for (auto i = static_cast<qint64>(m_completePieces); i < rows && breaks + rows <= highest; ++i) {
        const qint64 begin = i * charactersPerRow;
        if (charactersPerRow == 0 || begin >= m_text.size()) {
            break;
        }
        if (m_pieces.size() <= static_cast<std::size_t>(i)) {
            Piece piece;
            piece.begin = piece.tail = static_cast<int>(begin);
            piece.end = static_cast<int>(
                std::min<qint64>(begin + (i + 1) * charactersPerRow, std::numeric_limits<int>::max()));
            m_pieces.push_back(piece);
        }
        Piece& piece = m_pieces[static_cast<std::size_t>(i)];
        breakPiece(piece);
        const int end = std::min(piece.end, m_text.size());
        breaks += lineBlock(piece.begin, end, piece.breaks).rows;
        if (piece.end <= m_text.size() && m_completePieces == static_cast<std::size_t>(i)) {
            m_completeBreaks = breaks;
            ++m_completePieces;
        }
        if (trace) {
            std::vector<int> starts;
            for (int at = nextRow(piece.begin); at >= 0 && at < end; at = nextRow(at)) {
                starts.push_back(at);
            }
            traceLine(piece.begin, end, rows + breaks, starts);
        }
    }
    return {m_textWidth, rows + breaks};
}

qreal ChatTextMeasure::singleLineWidth() {
    lookForTurns();
    while (!m_directionTurns && m_text.size() - m_widthEnd > 2 * kWidthStep) {
        int cut = m_widthEnd + kWidthStep;
        const int last = m_text.size() - kCutNeighbours;
        while (cut < last && !widthsAddUpAt(cut)) {
            ++cut;
        }
        if (cut >= last) {
            break;
        }
        m_widthBefore += m_table->exactWidth(m_text, m_widthEnd, cut);
        m_widthEnd = cut;
    }
    return m_widthBefore + m_table->exactWidth(m_text, m_widthEnd, m_text.size());
}

void ChatTextMeasure::lookForTurns() {
    while (!m_directionTurns && m_directionSeen < m_text.size()) {
        const QChar unit = m_text[m_directionSeen];
        const bool last = m_directionSeen + 1 == m_text.size();
        if (unit.isHighSurrogate() && last) {
            // The other half is still to come.
            break;
        }
        const QChar next = unit.isHighSurrogate() ? m_text[m_directionSeen + 1] : QChar();
        m_directionTurns = ChatAdvanceTable::turnsDirection(
            next.isLowSurrogate() ? QChar::surrogateToUcs4(unit, next) : unit.unicode());
        ++m_directionSeen;
    }
    if (m_directionTurns) {
        m_widthEnd = 0;
        m_widthBefore = 0;
    }
}

bool ChatTextMeasure::widthsAddUpAt(int cut) const {
    const int from = cut - kCutNeighbours;
    const int to = cut + kCutNeighbours;
    for (int i = from; i < to; ++i) {
        if (!ChatAdvanceTable::isPlain(m_text[i])) {
            return false;
        }
    }
    // Widths are whole 64ths of a pixel, so their sums are exact.
    return m_table->exactWidth(m_text, from, to) ==
           m_table->exactWidth(m_text, from, cut) + m_table->exactWidth(m_text, cut, to);
}

void ChatTextMeasure::breakPiece(Piece& piece) {
    const int highest = QWIDGETSIZE_MAX / std::max(m_lineHeight, 1);
    while (piece.breaks <= highest) {
        const int next = nextRow(piece.tail);
        if (next < 0 || next >= piece.end) {
            break;
        }
        piece.tail = next;
        ++piece.breaks;
    }
}

int ChatTextMeasure::nextRow(int start) {
    int& next = m_nextRow[static_cast<std::size_t>(start)];
    if (next == 0) {
        auto row = m_openRows.find(start);
        if (row == m_openRows.end()) {
            row = m_openRows.insert(start, ChatLineScanner::lineAt(start));
        }
        const int at = m_scanner.fill(m_text, *row, m_text.size());
        if (at < 0) {
            return -1;
        }
        m_openRows.erase(row);
        next = at;
    }
    return next;
}
