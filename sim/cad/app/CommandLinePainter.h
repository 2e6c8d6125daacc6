#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "sim/cad/app/Canvas.h"
#include "sim/cad/app/Theme.h"
#include "sim/cad/core/CommandLine.h"

namespace cad {

/// Lays out and paints a command line: above, the scroll-back wrapped to the width; below, the row with the
/// prompt, the typed text and the caret.
class CommandLinePainter {
public:
    /// `scrolledRows` counts from the newest row upward.
    void paint(Canvas& canvas, const CommandLine& commandLine, const Theme& theme, const Area& area,
               int scrolledRows, bool caretVisible);

    /// The maximum scroll offset in rows, as of the last paint.
    int largestScroll() const { return m_largestScroll; }
    int visibleRows() const { return m_visibleRows; }

    /// The height in pixels that fits this many rows of scroll-back.
    static int heightForRows(int rows);

private:
    /// Rewraps the scroll-back if its text or the width has changed.
    void layOut(Canvas& canvas, const CommandLine& commandLine, double width);
    void appendWrapped(Canvas& canvas, const std::string& line, double width);
    double characterWidth(Canvas& canvas, char32_t character);
    void paintHistory(Canvas& canvas, const CommandLine& commandLine, const Theme& theme, const Area& area,
                      int scrolledRows);
    void paintScrollBar(Canvas& canvas, const Theme& theme, const Area& area, int scrolledRows,
                        int totalRows);
    void paintInput(Canvas& canvas, const CommandLine& commandLine, const Theme& theme, const Area& area,
                    bool caretVisible);

    std::unordered_map<char32_t, double> m_characterWidths;
    std::vector<std::string> m_rows;
    std::optional<unsigned> m_rowsRevision;
    double m_rowsWidth = 0;
    int m_largestScroll = 0;
    int m_visibleRows = 0;
};

}  // namespace cad
