#pragma once

#include <QLabel>

/// A label for titles, which can be any text that the user typed. It shows the text as a single line of plain
/// text, with line breaks as spaces, and its minimum size does not depend on the text. Text that does not fit
/// is clipped or elided. text() returns the text as it was set.
class ChatTitleLabel : public QLabel {
    Q_OBJECT

public:
    explicit ChatTitleLabel(QWidget* parent = nullptr);

    /// Qt::ElideNone, the default, clips.
    void setElideMode(Qt::TextElideMode mode);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString singleLineText() const;
    QSize sizeFor(int textWidth) const;

    Qt::TextElideMode m_elideMode = Qt::ElideNone;
};
