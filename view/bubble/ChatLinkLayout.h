#pragma once

#include <QColor>
#include <QFont>
#include <QRect>
#include <QString>
#include <memory>
#include <vector>

class QPainter;
class ChatAdvanceTable;

/// A clickable stretch of an answer and the CAD command it runs.
struct ChatLinkRun {
    QRect rect;
    QString command;
};

/// Lays out a complete answer character by character, with what stands between 【 and 】 as links, and paints
/// it. The layout is made once per text, width and font.
class ChatLinkLayout {
public:
    /// Lays the text out into the area unless that is how it is laid out already.
    void layOut(const QString& text, const QFont& font, const QRect& area);

    /// The links, in the coordinates of the area's widget. A link that wraps is one run with the rectangle
    /// around all its characters; links that follow each other with the same text and no line end between
    /// them are one too.
    const std::vector<ChatLinkRun>& runs() const { return m_runs; }

    /// Paints what meets the exposed rectangle: plain text with the painter's pen and the layout's font,
    /// links underlined and in their own colour.
    void paint(QPainter& painter, const QColor& linkColor, const QRect& exposed) const;

private:
    /// One painted character; a surrogate pair is one.
    struct Cell {
        int index = 0;
        int length = 1;
        int x = 0;
        int width = 0;
        bool link = false;
    };
    struct Row {
        int y = 0;
        std::size_t firstCell = 0;
    };
    /// What stands between a pair of brackets, as [begin, end).
    struct Range {
        int begin = 0;
        int end = 0;
    };

    static std::vector<Range> findLinks(const QString& text);
    void build();
    void paintRow(QPainter& painter, std::size_t row, const QColor& linkColor) const;

    QString m_text;
    QFont m_font;
    QRect m_area;
    std::shared_ptr<ChatAdvanceTable> m_table;
    int m_cellHeight = 0;
    std::vector<Cell> m_cells;
    std::vector<Row> m_rows;
    std::vector<ChatLinkRun> m_runs;
};
