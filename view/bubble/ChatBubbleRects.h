#pragma once

#include <QRect>
#include <QSize>

/// Positions of the parts of one chat bubble, in the bubble's own pixels. Left is the answer's side, right
/// the question's. All fixed distances are constants of the implementation; the heights follow
/// ChatBubbleHeight.
struct ChatBubbleRects {
    int bubbleWidth = 0;  ///< width of a full-width frame
    int textWidth = 0;    ///< width at which text wraps; zero or negative on a narrow bubble
    int spaceWidth = 0;   ///< width of the bubble that is not text
    int lineHeight = 0;   ///< line spacing of the bubble's font

    QRect iconLeftRect;
    QRect iconRightRect;      ///< Part of the interface; nothing in the module reads it.
    QRect triangleLeftRect;   ///< Part of the interface; nothing in the module reads it.
    QRect triangleRightRect;  ///< Part of the interface; nothing in the module reads it.
    QRect frameLeftRect;
    QRect frameRightRect;
    QRect textLeftRect;
    QRect textRightRect;
    QRect copyAnswerRect;
    QRect regenRect;
    QRect copyQuestionRect;
    QRect editRect;

    /// Sets the widths that depend on the bubble's width only.
    void setWidth(int width);
    /// Computes all rectangles for a measured text (ChatTextMeasure); call setWidth() and set lineHeight
    /// first. Returns the size of the whole bubble.
    QSize place(const QSize& measured);
};
