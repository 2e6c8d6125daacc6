#pragma once

#include <QColor>
#include <QFont>
#include <QRect>
#include <QString>
#include <cstddef>
#include <memory>
#include <vector>

class QPainter;
class ChatAdvanceTable;

/// A clickable part of an answer and the CAD command it runs.
struct ChatLinkRun {
    QRect rect;
    QString command;
};

/// Lays out and paints a complete answer character by character, with the text between 【 and 】 as links.
/// The layout is kept until the text, the area or the font changes. UI thread.
class ChatLinkLayout {
public:
    /// Lays the text out into the area unless the current layout is already that.
    void layOut(const QString& text, const QFont& font, const QRect& area);

    /// The links, in the coordinate system of the area. A link that wraps is one run whose rectangle is the
    /// bounding rectangle of all its characters. Consecutive links with the same text and no line break
    /// between them are one run, too.
    const std::vector<ChatLinkRun>& runs() const { return m_runs; }

    /// Paints the rows that intersect the exposed rectangle: plain text with the painter's pen and font,
    /// links underlined and in the link colour.
    void paint(QPainter& painter, const QColor& linkColor, const QRect& exposed) const;

private:
    class Builder;

    /// One painted character; a surrogate pair counts as one.
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
