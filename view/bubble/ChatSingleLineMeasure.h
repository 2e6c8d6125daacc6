#pragma once

#include <QHash>
#include <QString>
#include <QtGlobal>
#include <cstddef>
#include <vector>

#include "view/bubble/ChatLineScanner.h"
#include "view/bubble/ChatLineWrap.h"

/// The rule for a text without line breaks. A text that is too wide is cut into pieces by a fixed number of
/// characters per row, and each piece is wrapped at the wrap width. The pieces overlap and grow: piece i
/// begins at i row lengths and is i + 1 row lengths long. The heights of all single-line bubbles depend on
/// that, so it must stay.
///
/// Keeps its state between calls: for appended text, measuring continues where it stopped.
class ChatSingleLineMeasure {
public:
    ChatSingleLineMeasure() = default;
    explicit ChatSingleLineMeasure(const ChatLineWrap& wrap) : m_wrap(wrap) {}

    /// Measures the text, which must begin with the text of the previous call. Stops counting breaks at
    /// ChatBubbleHeight::maxBreaks(). `trace` writes long lines to Qt's debug output.
    ChatTextBlock measure(const QString& text, bool trace);

private:
    struct Piece {
        int begin = 0;
        int end = 0;      ///< may lie beyond the end of the text
        int lastRow = 0;  ///< where the last row found so far starts
        int breaks = 0;
    };

    qint64 measurePieces(int rows, bool trace);
    void breakPiece(Piece& piece);
    int nextRow(int start);
    void tracePiece(const Piece& piece, int end, qint64 total);

    qreal textWidth();
    void updateDirection();
    bool widthsAddUpAt(int cut) const;

    ChatLineWrap m_wrap;
    QString m_text;

    // Width of the text: m_headWidth is that of the first m_headEnd characters. It is used while no character
    // changes the direction of writing; the first m_directionChecked characters have been checked for that.
    int m_headEnd = 0;
    qreal m_headWidth = 0;
    int m_directionChecked = 0;
    bool m_turnsDirection = false;

    std::vector<int> m_nextRow;                    ///< by start of a row: start of the next; 0 if not known
    QHash<int, ChatLineScanner::Line> m_openRows;  ///< by start of a row: a row that is not full yet
    std::vector<Piece> m_pieces;
    std::size_t m_completePieces = 0;  ///< leading pieces that end within the text
    qint64 m_completeBreaks = 0;       ///< breaks of the complete pieces
};
