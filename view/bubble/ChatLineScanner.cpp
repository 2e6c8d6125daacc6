#include "view/bubble/ChatLineScanner.h"

#include <QtMath>
#include <utility>

namespace {

// Estimates are trusted up to this distance from the limit, in line heights.
constexpr qreal kSureDistance = 2.0;
// A line whose estimate is off by more than this, in line heights, is measured character by character.
constexpr qreal kTolerance = 0.25;

}  // namespace

ChatLineScanner::ChatLineScanner(std::shared_ptr<ChatAdvanceTable> table, Use use, int limit)
    : m_table(std::move(table)), m_use(use), m_limit(limit) {
    const qreal lineHeight = m_table->metrics().lineSpacing();
    m_sureBelow = limit - kSureDistance * lineHeight;
    m_tolerance = kTolerance * lineHeight;
}

ChatLineScanner::Line ChatLineScanner::lineAt(int start) {
    Line line;
    line.start = start;
    line.accepted = start;
    return line;
}

bool ChatLineScanner::isTooWide(const QString& text, int from, int to) const {
    return m_use == Use::Measuring ? m_table->exactWidth(text, from, to) > m_limit
                                   : m_table->roundedWidth(text, from, to) > m_limit;
}

int ChatLineScanner::characterLength(const QString& text, int at) const {
    return m_use == Use::Painting && at + 1 < text.size() && text[at].isHighSurrogate() &&
                   text[at + 1].isLowSurrogate()
               ? 2
               : 1;
}

bool ChatLineScanner::estimateFits(const QString& text, Line& line) const {
    const int at = line.accepted;
    if (line.measureAll || line.nearLimit) {
        return false;
    }
    if (!ChatAdvanceTable::isPlain(text[at]) || !ChatAdvanceTable::isPlain(text[at - 1])) {
        line.measureAll = true;
        line.accepted = line.start + characterLength(text, line.start);
        return false;
    }
    const qreal estimate = line.estimate + m_table->advanceAfter(text[at - 1], text[at]);
    if (estimate <= m_sureBelow) {
        line.estimate = estimate;
        return true;
    }
    line.nearLimit = true;
    if (qAbs(m_table->exactWidth(text, line.start, at) - line.estimate) > m_tolerance) {
        line.measureAll = true;
        line.accepted = line.start + characterLength(text, line.start);
    }
    return false;
}

int ChatLineScanner::fill(const QString& text, Line& line, int end) const {
    while (line.accepted < end) {
        if (line.accepted == line.start) {
            line.estimate = m_table->advance(text[line.start]);
            line.accepted += characterLength(text, line.start);
            continue;
        }
        const bool fits = estimateFits(text, line);
        const int next = line.accepted + characterLength(text, line.accepted);
        if (!fits && isTooWide(text, line.start, next)) {
            return line.accepted;
        }
        line.accepted = next;
    }
    return -1;
}
