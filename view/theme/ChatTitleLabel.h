#pragma once

#include <QLabel>

/// A label for titles, which are whatever the user typed: it shows the text as one row of plain text, line
/// breaks as blanks, and never asks for more room than there is. text() stays as it was set. What does not
/// fit is cut off, or elided if so asked.
class ChatTitleLabel : public QLabel {
    Q_OBJECT

public:
    explicit ChatTitleLabel(QWidget* parent = nullptr);

    void setElideMode(Qt::TextElideMode mode);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString rowText() const;
    QSize sizeFor(int textWidth) const;

    Qt::TextElideMode m_elideMode = Qt::ElideNone;
};
