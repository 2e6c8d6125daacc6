#pragma once

#include <QRect>
#include <QSize>

/// Where the parts of one chat bubble stand, in the bubble's own pixels. Left is the answer's side, right the
/// question's.
struct ChatBubbleRects {
    int bubbleWidth = 0;  ///< what a full-width frame takes
    int textWidth = 0;    ///< where text wraps; may be zero or negative on a narrow bubble
    int spaceWidth = 0;   ///< what is left beside the text
    int lineHeight = 0;   ///< line spacing of the bubble's font

    QRect iconLeftRect;
    QRect iconRightRect;
    QRect triangleLeftRect;
    QRect triangleRightRect;
    QRect frameLeftRect;
    QRect frameRightRect;
    QRect textLeftRect;
    QRect textRightRect;
    QRect copyAnswerRect;
    QRect regenRect;
    QRect copyQuestionRect;
    QRect editRect;

    /// Takes the widths that follow from the bubble's width alone.
    void setWidth(int width);
    /// Places everything for a text block of the given measured size; needs setWidth and lineHeight.
    /// Returns the size of the whole bubble.
    QSize place(const QSize& measured);
};
