#pragma once

#include <QChar>

class QKeyEvent;
class QObject;

/// Mends the characters that the host's palette forwards one UTF-16 unit at a time, where a text box of Qt's
/// would get them wrong.
class ChatTypedCharacters {
public:
    /// To be shown every key press of the text boxes. True when the press is dealt with and must not reach
    /// the box: it is half of a character of two units (the second half types both), or the character of a
    /// key that has acted already.
    bool take(QObject* box, const QKeyEvent& press);

private:
    /// The first half of a character whose second is still to come; null otherwise.
    QChar m_firstHalf;
};
