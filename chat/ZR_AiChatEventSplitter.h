#pragma once

#include <QByteArray>
#include <QString>

/// Splits the bytes of an answer stream into events: append() takes the bytes as they arrive, takeEvent()
/// returns the texts of complete events. The result does not depend on how the stream was split into chunks.
///
/// An event ends with an empty line ("\n\n"; "\r\n\r\n" is not recognised). Its text is its bytes decoded as
/// UTF-8 with every "data:" removed, wherever it occurs; nothing else is stripped.
class ZR_AiChatEventSplitter {
public:
    /// Appends received bytes. The cost depends on their number only, not on how much of an event is
    /// buffered.
    void append(const QByteArray& bytes);

    /// Removes the next complete event and returns its text; false when there is none yet.
    bool takeEvent(QString& text);

    /// Number of buffered bytes that do not belong to an event already taken.
    int pendingSize() const { return m_buffer.size() - m_begin; }
    /// The last of the pending bytes, at most `limit`.
    QByteArray pendingTail(int limit) const;

private:
    QByteArray m_buffer;
    /// Index of the first pending byte.
    int m_begin = 0;
    /// Index at which the search for the end of the event resumes; no event ends before it.
    int m_scan = 0;
};
