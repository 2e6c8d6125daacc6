#include "view/ChatTypedCharacters.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QString>

bool ChatTypedCharacters::take(QObject* box, const QKeyEvent& press) {
    const QString text = press.text();
    // An injected character comes with a key press without text before each of its halves.
    if (text.isEmpty()) {
        return false;
    }
    // A forwarded character has text but no key code.
    const QChar unit = press.key() == 0 && text.size() == 1 ? text[0] : QChar();
    const QChar highSurrogate = m_highSurrogate;
    m_highSurrogate = unit.isHighSurrogate() ? unit : QChar();
    if (unit.isHighSurrogate()) {
        return true;
    }
    if (unit.isLowSurrogate()) {
        if (!highSurrogate.isNull()) {
            QKeyEvent whole(QEvent::KeyPress, 0, press.modifiers(), QString(highSurrogate) + unit);
            QCoreApplication::sendEvent(box, &whole);
        }
        return true;
    }
    // Tab is the only control character that a text box inserts, and its key press has inserted it already.
    return unit == QLatin1Char('\t');
}
