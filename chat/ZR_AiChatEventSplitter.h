#pragma once

#include <QByteArray>
#include <QString>

/// Cuts the bytes of an answer stream into events. Bytes go in as they arrive, the texts of complete events
/// come out. The result does not depend on how the bytes were cut into chunks.
///
/// An event ends with an empty line ("\n\n"; "\r\n\r\n" is not recognised). Its text is its bytes decoded as
/// UTF-8 without any "data:", wherever that stands; nothing else is stripped.
class ZR_AiChatEventSplitter {
public:
    /// Takes bytes in. Costs what the bytes cost, however many are waiting for the end of their event.
    void append(const QByteArray& bytes);

    /// Takes the next complete event out; false when there is none yet.
    bool takeEvent(QString& text);

    /// How many bytes wait, taken in and not yet part of an event taken out.
    int pendingSize() const { return m_buffer.size() - m_begin; }
    /// The last bytes that wait, at most `limit` of them.
    QByteArray pendingTail(int limit) const;

private:
    QByteArray m_buffer;
    /// Where the bytes begin that have not been taken out.
    int m_begin = 0;
    /// Where the search for the end of the event goes on; no event ends before it.
    int m_scan = 0;
};
