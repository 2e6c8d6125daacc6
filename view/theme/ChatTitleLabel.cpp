#include "view/theme/ChatTitleLabel.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

ChatTitleLabel::ChatTitleLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

void ChatTitleLabel::setElideMode(Qt::TextElideMode mode) {
    m_elideMode = mode;
    update();
}

QString ChatTitleLabel::singleLineText() const {
    QString line = text();
    for (QChar& unit : line) {
        if (unit.isSpace()) {
            unit = QLatin1Char(' ');
        }
    }
    return line;
}

QSize ChatTitleLabel::sizeFor(int textWidth) const {
    const QRect contents = contentsRect();
    return {textWidth + qMax(indent(), 0) + width() - contents.width(),
            fontMetrics().height() + height() - contents.height()};
}

QSize ChatTitleLabel::sizeHint() const {
    ensurePolished();
    return sizeFor(fontMetrics().horizontalAdvance(singleLineText()));
}

QSize ChatTitleLabel::minimumSizeHint() const {
    ensurePolished();
    return sizeFor(0);
}

void ChatTitleLabel::paintEvent(QPaintEvent* event) {
    Q_UNUSED(event)
    QPainter painter(this);
    drawFrame(&painter);
    QStyleOption option;
    option.initFrom(this);
    const QRect area = contentsRect().adjusted(qMax(indent(), 0), 0, 0, 0);
    const QString shown = fontMetrics().elidedText(singleLineText(), m_elideMode, area.width());
    style()->drawItemText(&painter, area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                          option.palette, isEnabled(), shown, foregroundRole());
}
