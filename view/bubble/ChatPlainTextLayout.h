#pragma once

#include <QFont>
#include <QRectF>
#include <QString>
#include <QTextOption>
#include <memory>
#include <vector>

class QPainter;
class QTextLayout;

/// Paints wrapped, vertically centred text exactly as QPainter::drawText() does with the same rectangle and
/// option, but keeps the layout between paints and paints only the exposed lines. When text is appended, only
/// the part after the last line break is laid out again. UI thread.
class ChatPlainTextLayout {
public:
    ChatPlainTextLayout();
    ~ChatPlainTextLayout();

    /// Left aligned, vertically centred, wrapped at word boundaries or, within a word that is too long,
    /// anywhere.
    static QTextOption textOption();

    /// Paints with the painter's pen and font. `area` and `exposed` are in the painter's coordinates.
    void paint(QPainter& painter, const QString& text, const QRectF& area, const QRectF& exposed);

private:
    struct Paragraph {
        int begin = 0;
        int end = 0;
        std::unique_ptr<QTextLayout> layout;
    };

    static bool isSimple(const QString& text, int from);
    void layOut(const QString& text, const QFont& font, qreal width);
    void layOutParagraph(int begin, int end);

    QString m_text;
    QFont m_font;
    qreal m_width = 0;
    bool m_isSimple = true;  // otherwise paint() leaves the text to QPainter
    std::vector<Paragraph> m_paragraphs;
};
