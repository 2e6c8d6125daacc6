#include "view/ChatTypedCharacters.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QString>

bool ChatTypedCharacters::take(QObject* box, const QKeyEvent& press) {
    const QString text = press.text();
    // The key that an injected character comes with is pressed before each of its halves.
    if (text.isEmpty()) {
        return false;
    }
    // A forwarded character has a text but no key.
    const QChar unit = press.key() == 0 && text.size() == 1 ? text[0] : QChar();
    const QChar firstHalf = m_firstHalf;
    m_firstHalf = unit.isHighSurrogate() ? unit : QChar();
    if (unit.isHighSurrogate()) {
        return true;
    }
    if (unit.isLowSurrogate()) {
        if (!firstHalf.isNull()) {
            QKeyEvent whole(QEvent::KeyPress, 0, press.modifiers(), QString(firstHalf) + unit);
            QCoreApplication::sendEvent(box, &whole);
        }
        return true;
    }
    // The one control character that a text box types, and also the one that its key has typed by then.
    return unit == QLatin1Char('\t');
}
