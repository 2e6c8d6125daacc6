#pragma once

#include <QFont>
#include <QRectF>
#include <QString>
#include <QTextOption>
#include <memory>
#include <vector>

class QPainter;
class QTextLayout;

/// Paints wrapped text, vertically centred, exactly as QPainter::drawText does with the same rectangle and
/// option, but keeps the lines between paints and paints only those that are exposed. Text that grows at its
/// end is laid out anew from its last line break on.
class ChatPlainTextLayout {
public:
    ChatPlainTextLayout();
    ~ChatPlainTextLayout();

    /// Left aligned, vertically centred, wrapped at words or, where one is too long, anywhere.
    static QTextOption textOption();

    /// Paints with the painter's pen; `exposed` is in the painter's coordinates.
    void paint(QPainter& painter, const QString& text, const QRectF& area, const QRectF& exposed);

private:
    struct Paragraph {
        int begin = 0;
        int end = 0;
        std::unique_ptr<QTextLayout> layout;
    };

    static bool isOrdinary(const QString& text, int from);
    void layOut(const QString& text, const QFont& font, qreal width);
    void layOutParagraph(int begin, int end);

    QString m_text;
    QFont m_font;
    qreal m_width = 0;
    bool m_ordinary = true;
    std::vector<Paragraph> m_paragraphs;
};
