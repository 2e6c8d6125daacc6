#pragma once

#include <QtGlobal>

/// The rule for the height of a bubble, in pixels:
///
///     measured text = (breaks + kSpareRows) * line height, at most the height that a widget can have
///     text block    = measured text, at least kMinTextBlock
///     frame         = text block - line height
///     bubble        = text block + kButtonRow
///
/// A text with n breaks has n + 1 rows (a text without line breaks counts more, see ChatSingleLineMeasure),
/// so its frame is one line taller than the text; the padding above and below the text is taken from that
/// line.
struct ChatBubbleHeight {
    /// Rows that are added to the breaks of every text.
    static constexpr int kSpareRows = 3;
    static constexpr int kMinTextBlock = 30;
    /// The row of icon buttons below the frame.
    static constexpr int kButtonRow = 40;

    /// Height of the measured text. `breaks` includes line breaks in the text and breaks added by wrapping.
    static int ofMeasuredText(qint64 breaks, int lineHeight);
    /// With more breaks than this the measured text has its maximum height.
    static int maxBreaks(int lineHeight);

    ChatBubbleHeight(int measuredText, int lineHeight);

    int frame;   ///< the rounded frame around the text
    int bubble;  ///< the whole bubble
};
