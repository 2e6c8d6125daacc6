#pragma once

#include <QChar>

class QKeyEvent;
class QObject;

/// Corrects the key presses that the host's palette forwards one UTF-16 unit at a time, where a Qt text box
/// would insert the wrong text.
class ChatTypedCharacters {
public:
    /// Call for every key press of the text boxes. Returns true if the press must not reach the box: it is
    /// one half of a surrogate pair (the second half inserts both), or a character that was already inserted
    /// by its key.
    bool take(QObject* box, const QKeyEvent& press);

private:
    /// High surrogate that waits for its low surrogate; null otherwise.
    QChar m_highSurrogate;
};
