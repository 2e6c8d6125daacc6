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

QString ChatTitleLabel::rowText() const {
    QString row = text();
    for (QChar& unit : row) {
        if (unit.isSpace()) {
            unit = QLatin1Char(' ');
        }
    }
    return row;
}

QSize ChatTitleLabel::sizeFor(int textWidth) const {
    const QRect contents = contentsRect();
    return {textWidth + qMax(indent(), 0) + width() - contents.width(),
            fontMetrics().height() + height() - contents.height()};
}

QSize ChatTitleLabel::sizeHint() const {
    ensurePolished();
    return sizeFor(fontMetrics().horizontalAdvance(rowText()));
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
    const QString shown = fontMetrics().elidedText(rowText(), m_elideMode, area.width());
    style()->drawItemText(&painter, area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                          option.palette, isEnabled(), shown, foregroundRole());
}
