#include "sim/cad/app/CommandLinePainter.h"

#include <algorithm>
#include <cmath>

#include "sim/cad/core/Text.h"

namespace cad {

namespace {

constexpr double kMargin = 8;
constexpr double kRowHeight = 20;
constexpr double kInputHeight = 30;
constexpr double kTextInset = 10;
constexpr double kChevronRoom = 20;
constexpr double kScrollBarRoom = 10;
constexpr double kCorner = 4;

double centered(double top, double height, double inner) {
    return std::floor(top + (height - inner) / 2);
}

}  // namespace

int CommandLinePainter::heightForRows(int rows) {
    return static_cast<int>(3 * kMargin + rows * kRowHeight + kInputHeight);
}

void CommandLinePainter::paint(Canvas& canvas, const CommandLine& commandLine, const Theme& theme,
                               const Area& area, int scrolledRows, bool caretVisible) {
    canvas.fill(area, theme.frame);
    canvas.fill({area.x, area.y, area.width, 1}, theme.border);
    const Area inner = area.inset(kMargin);
    const Area input{inner.x, inner.bottom() - kInputHeight, inner.width, kInputHeight};
    const Area history{inner.x, inner.y, inner.width, std::max(0.0, input.y - kMargin - inner.y)};
    paintHistory(canvas, commandLine, theme, history, scrolledRows);
    paintInput(canvas, commandLine, theme, input, caretVisible);
}

double CommandLinePainter::characterWidth(Canvas& canvas, char32_t character) {
    const auto known = m_characterWidths.find(character);
    if (known != m_characterWidths.end()) {
        return known->second;
    }
    const double width = canvas.textWidth(toUtf8(character), Font::CommandLine);
    m_characterWidths.emplace(character, width);
    return width;
}

void CommandLinePainter::layOut(Canvas& canvas, const CommandLine& commandLine, double width) {
    if (m_rowsRevision == commandLine.linesRevision() && m_rowsWidth == width) {
        return;
    }
    m_rows.clear();
    for (const std::string& line : commandLine.lines()) {
        appendWrapped(canvas, line, width);
    }
    m_rowsRevision = commandLine.linesRevision();
    m_rowsWidth = width;
}

void CommandLinePainter::appendWrapped(Canvas& canvas, const std::string& line, double width) {
    m_rows.emplace_back();
    double used = 0;
    for (const char32_t character : fromUtf8(line)) {
        const double advance = characterWidth(canvas, character);
        if (used + advance > width && !m_rows.back().empty()) {
            m_rows.emplace_back();
            used = 0;
        }
        m_rows.back() += toUtf8(character);
        used += advance;
    }
}

void CommandLinePainter::paintHistory(Canvas& canvas, const CommandLine& commandLine, const Theme& theme,
                                      const Area& area, int scrolledRows) {
    canvas.fillRounded(area, kCorner, theme.history);
    const Area text{area.x + kTextInset, area.y, area.width - 2 * kTextInset - kScrollBarRoom, area.height};
    m_visibleRows = std::max(1, static_cast<int>(text.height / kRowHeight));
    layOut(canvas, commandLine, text.width);
    const int total = static_cast<int>(m_rows.size());
    m_largestScroll = std::max(0, total - m_visibleRows);
    const int end = total - std::clamp(scrolledRows, 0, m_largestScroll);
    const int first = std::max(0, end - m_visibleRows);
    canvas.pushClip(area);
    // Rows are aligned with the lower edge, next to the input.
    double top = area.bottom() - kRowHeight * (end - first) - 2;
    const double line = canvas.lineHeight(Font::CommandLine);
    for (int i = first; i < end; ++i) {
        canvas.text(text.x, centered(top, kRowHeight, line), m_rows[static_cast<size_t>(i)],
                    Font::CommandLine, theme.mutedText);
        top += kRowHeight;
    }
    canvas.popClip();
    if (m_largestScroll > 0) {
        paintScrollBar(canvas, theme, area, std::clamp(scrolledRows, 0, m_largestScroll), total);
    }
}

void CommandLinePainter::paintScrollBar(Canvas& canvas, const Theme& theme, const Area& area,
                                        int scrolledRows, int totalRows) {
    constexpr double kWidth = 4;
    constexpr double kSmallestThumb = 16;
    const Area track{area.right() - kWidth - 4, area.y + 4, kWidth, area.height - 8};
    const double thumb = std::max(kSmallestThumb, track.height * m_visibleRows / totalRows);
    const double room = track.height - thumb;
    const double top = track.y + room * (m_largestScroll - scrolledRows) / m_largestScroll;
    canvas.fillRounded({track.x, top, kWidth, thumb}, kWidth / 2, theme.mutedText, 0.45);
}

void CommandLinePainter::paintInput(Canvas& canvas, const CommandLine& commandLine, const Theme& theme,
                                    const Area& area, bool caretVisible) {
    const Area box{area.x + 0.5, area.y + 0.5, area.width - 1, area.height - 1};
    canvas.fillRounded(box, kCorner, theme.input);
    canvas.strokeRounded(box, kCorner, {theme.border, 1, 0});
    const double middle = area.y + area.height / 2;
    const double chevron = area.x + kTextInset;
    canvas.polyline({{chevron, middle - 4}, {chevron + 4, middle}, {chevron, middle + 4}}, false,
                    {theme.accent, 1.75, 0});

    const double left = chevron + kChevronRoom - kTextInset / 2;
    const Area text{left, area.y, area.right() - kTextInset - left, area.height};
    const double line = canvas.lineHeight(Font::CommandLine);
    const double top = centered(area.y, area.height, line);
    const double promptWidth = canvas.textWidth(commandLine.prompt(), Font::CommandLine);
    const double caret = promptWidth + canvas.textWidth(commandLine.inputBeforeCaret(), Font::CommandLine);
    // Input that is too long is scrolled so that the caret stays visible.
    const double shift = std::max(0.0, caret + 2 - text.width);
    canvas.pushClip(text);
    canvas.text(text.x - shift, top, commandLine.prompt(), Font::CommandLine, theme.accent);
    canvas.text(text.x - shift + promptWidth, top, commandLine.input(), Font::CommandLine, theme.inputText);
    if (caretVisible) {
        canvas.fill({std::floor(text.x - shift + caret), area.y + 7, 1.5, area.height - 14}, theme.inputText);
    }
    canvas.popClip();
}

}  // namespace cad
