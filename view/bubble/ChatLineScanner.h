#pragma once

#include <QString>
#include <memory>

#include "view/bubble/ChatAdvanceTable.h"

/// Finds the character at which a line becomes too wide: the first one with which the width of the line
/// exceeds the limit. The result is the same as measuring the line with the font's metrics after every
/// character. Far from the limit an estimated width is enough; near it the estimate is verified and the true
/// widths are measured.
class ChatLineScanner {
public:
    /// Measuring uses fractional widths and counts UTF-16 units. Painting uses whole pixels and keeps
    /// surrogate pairs together.
    enum class Use { Measuring, Painting };

    /// The state of a line that is being filled. Filling can be continued when the text has grown.
    struct Line {
        int start = 0;
        int accepted = 0;         ///< characters [start, accepted) fit
        qreal estimate = 0;       ///< estimated width of those characters
        bool nearLimit = false;   ///< estimates are no longer precise enough
        bool measureAll = false;  ///< estimates cannot be used for this line
    };

    /// Unusable until assigned.
    ChatLineScanner() = default;
    ChatLineScanner(std::shared_ptr<ChatAdvanceTable> table, Use use, int limit);

    static Line lineAt(int start);

    /// Fills the line with the text up to `end`. Returns the index at which it breaks, or -1 if the text
    /// fits. The first character always fits.
    int fill(const QString& text, Line& line, int end) const;

    bool isTooWide(const QString& text, int from, int to) const;

    /// Length of the character at the index: 2 for a surrogate pair in painting, otherwise 1.
    int characterLength(const QString& text, int at) const;

private:
    bool estimateFits(const QString& text, Line& line) const;

    std::shared_ptr<ChatAdvanceTable> m_table;
    Use m_use = Use::Measuring;
    int m_limit = 0;
    qreal m_sureBelow = 0;
    qreal m_tolerance = 0;
};
