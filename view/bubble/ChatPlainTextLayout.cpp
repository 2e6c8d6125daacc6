#include "view/bubble/ChatPlainTextLayout.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>
#include <QtMath>

#include "view/bubble/ChatAdvanceTable.h"

namespace {

// How many line heights a glyph may extend beyond its line.
constexpr qreal kOverhang = 1.0;

}  // namespace

ChatPlainTextLayout::ChatPlainTextLayout() = default;
ChatPlainTextLayout::~ChatPlainTextLayout() = default;

QTextOption ChatPlainTextLayout::textOption() {
    QTextOption option(Qt::AlignLeft | Qt::AlignVCenter);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return option;
}

bool ChatPlainTextLayout::isSimple(const QString& text, int from) {
    for (int i = from; i < text.size(); ++i) {
        const QChar unit = text[i];
        if (unit == QLatin1Char('\n')) {
            continue;
        }
        // QPainter replaces these characters, or they make the layout of a line depend on other lines.
        if (unit < QLatin1Char(' ') || unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator ||
            unit == QChar::ObjectReplacementCharacter || unit.isSurrogate() ||
            ChatAdvanceTable::turnsDirection(unit.unicode())) {
            return false;
        }
    }
    return true;
}

void ChatPlainTextLayout::layOut(const QString& text, const QFont& font, qreal width) {
    const bool grown = qFuzzyCompare(width + 1, m_width + 1) && font == m_font && !m_text.isEmpty() &&
                       text.startsWith(m_text);
    if (grown && text.size() == m_text.size()) {
        return;
    }
    if (!grown) {
        m_paragraphs.clear();
        m_isSimple = true;
    }
    const int before = grown ? m_text.size() : 0;
    m_text = text;
    m_font = font;
    m_width = width;
    m_isSimple = m_isSimple && isSimple(text, before);
    if (!m_isSimple) {
        m_paragraphs.clear();
        return;
    }
    int begin = 0;
    if (!m_paragraphs.empty()) {
        begin = m_paragraphs.back().begin;
        m_paragraphs.pop_back();
    }
    for (;;) {
        const int lineBreak = text.indexOf(QLatin1Char('\n'), begin);
        layOutParagraph(begin, lineBreak < 0 ? text.size() : lineBreak);
        if (lineBreak < 0) {
            break;
        }
        begin = lineBreak + 1;
    }
}

void ChatPlainTextLayout::layOutParagraph(int begin, int end) {
    auto layout = std::make_unique<QTextLayout>(m_text.mid(begin, end - begin), m_font);
    QTextOption option = textOption();
    option.setAlignment(Qt::AlignLeft);
    layout->setTextOption(option);
    layout->setCacheEnabled(true);
    layout->beginLayout();
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLineWidth(m_width);
    }
    layout->endLayout();
    m_paragraphs.push_back({begin, end, std::move(layout)});
}

void ChatPlainTextLayout::paint(QPainter& painter, const QString& text, const QRectF& area,
                                const QRectF& exposed) {
    if (text.isEmpty()) {
        return;
    }
    layOut(text, painter.font(), qMax<qreal>(0, area.width()));
    if (!m_isSimple) {
        painter.drawText(area, text, textOption());
        return;
    }

    // As in QPainter, lines begin on whole pixels, and lines below the area do not count for centring.
    struct PlacedLine {
        QTextLine line;
        qreal y;
    };
    std::vector<PlacedLine> lines;
    const qreal leading = QFontMetricsF(painter.font()).leading();
    qreal height = -leading;
    qreal width = 0;
    for (const Paragraph& paragraph : m_paragraphs) {
        for (int i = 0; i < paragraph.layout->lineCount() && height < area.height(); ++i) {
            const QTextLine line = paragraph.layout->lineAt(i);
            height = qCeil(height + leading);
            lines.push_back({line, height});
            height += line.height();
            width = qMax(width, line.naturalTextWidth());
        }
    }
    const qreal top = area.y() + (area.height() - height) / 2;

    const bool clipped = !area.contains(QRectF(area.x(), top, width, height));
    if (clipped) {
        painter.save();
        painter.setClipRect(area, Qt::IntersectClip);
    }
    for (const PlacedLine& placed : lines) {
        const qreal reach = placed.line.height() * kOverhang;
        const qreal y = top + placed.y;
        if (y + placed.line.height() + reach >= exposed.top() && y - reach <= exposed.bottom()) {
            placed.line.draw(&painter, QPointF(area.x(), top + placed.y - placed.line.y()));
        }
    }
    if (clipped) {
        painter.restore();
    }
}
