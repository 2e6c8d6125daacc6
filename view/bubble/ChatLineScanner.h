#pragma once

#include <QString>
#include <memory>

#include "view/bubble/ChatAdvanceTable.h"

/// Finds the character at which a line becomes too wide. The rule is "the first character with which the
/// line's own width exceeds the limit", and the answer is that of the font's metrics, character by character.
/// Only those characters are measured that can decide it: far from the limit an estimate of the width is
/// enough, and it is checked before it is trusted.
class ChatLineScanner {
public:
    /// What the line is scanned for: measured widths in UTF-16 units, or painting, whose metrics are whole
    /// pixels and which keeps surrogate pairs together.
    enum class Use { Measuring, Painting };

    /// One line that is being filled, so that it can go on when the text grows.
    struct Line {
        int start = 0;
        int accepted = 0;  ///< characters [start, accepted) fit
        qreal estimate = 0;
        bool checked = false;     ///< near the limit, where only true widths count
        bool measureAll = false;  ///< estimates do not serve this line
    };

    ChatLineScanner() = default;
    ChatLineScanner(std::shared_ptr<ChatAdvanceTable> table, Use use, int limit);

    static Line lineAt(int start);

    /// Fills the line from the text before `end`. Returns where it breaks, or -1 when all of it fits. The
    /// first character fits always.
    int fill(const QString& text, Line& line, int end) const;

    bool isTooWide(const QString& text, int from, int to) const;

    /// Length of the character at the index, as this use counts characters.
    int characterLength(const QString& text, int at) const;

private:
    bool estimateFits(const QString& text, Line& line) const;

    std::shared_ptr<ChatAdvanceTable> m_table;
    Use m_use = Use::Measuring;
    int m_limit = 0;
    qreal m_sureBelow = 0;
    qreal m_tolerance = 0;
};
