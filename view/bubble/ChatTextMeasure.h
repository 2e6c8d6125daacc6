#pragma once

#include <QFont>
#include <QHash>
#include <QSize>
#include <QString>
#include <memory>
#include <vector>

#include "view/bubble/ChatAdvanceTable.h"
#include "view/bubble/ChatLineScanner.h"

/// Measures the text of a bubble by two rules: a text without line breaks by a fixed number of characters per
/// row, any other text line by line. It remembers the text that it measured last, so that a longer one that
/// begins with it costs what was added. Traces of long lines go to Qt's debug output when a text is measured
/// from its start.
class ChatTextMeasure {
public:
    /// Size of the text block with `spaceWidth` beside it, for text that wraps at `textWidth`. Three rows
    /// more than the text has are counted. A text width of zero or less leaves no room and gives a size that
    /// nothing is drawn in. Rows are counted up to the height that a widget can have.
    QSize measureText(const QString& text, const QFont& font, int textWidth, int spaceWidth);

    /// Line spacing of the font measured last, whole pixels.
    int lineHeight() const { return m_lineHeight; }

private:
    /// Width of the block and the rows it has beyond the first.
    struct Block {
        int width = 0;
        qint64 rows = 0;
    };
    /// One of the overlapping pieces that the rule for single lines cuts the text into.
    struct Piece {
        int begin = 0;
        int end = 0;   ///< may lie beyond the text
        int tail = 0;  ///< where its last row starts
        int breaks = 0;
    };

    void reset(const QFont& font, int textWidth);
    Block measureLines(bool fresh);
    Block lineBlock(int begin, int end, int breaks) const;
    void traceLine(int begin, int end, qint64 rows, const std::vector<int>& breaks) const;

    Block measureSingleLine(bool fresh);
    qreal singleLineWidth();
    void lookForTurns();
    bool widthsAddUpAt(int cut) const;
    void breakPiece(Piece& piece);
    int nextRow(int start);

    QFont m_font;
    int m_textWidth = 0;
    int m_lineHeight = 0;
    QString m_text;
    std::shared_ptr<ChatAdvanceTable> m_table;
    ChatLineScanner m_scanner;
    int m_lineBreaks = 0;

    // Line by line: what the complete lines came to, and how far the last one is.
    Block m_doneLines;
    int m_lastStart = 0;
    int m_lastBreaks = 0;
    ChatLineScanner::Line m_lastRow;

    // A single line: the width up to a place where widths add up, the rows found from each start, the pieces.
    int m_widthEnd = 0;
    qreal m_widthBefore = 0;
    int m_directionSeen = 0;  ///< up to where turns of direction were looked for
    bool m_directionTurns = false;
    std::vector<int> m_nextRow;
    QHash<int, ChatLineScanner::Line> m_openRows;
    std::vector<Piece> m_pieces;
    qint64 m_completeBreaks = 0;
    std::size_t m_completePieces = 0;
};
