#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The rule by which an answer stream is cut into events, step by step as it is stated and without any care
/// for speed. What the module's own splitter is held against.
class PlainEventSplitter {
public:
    /// Takes a chunk in and returns the texts of the events that are complete now.
    QStringList takeChunk(const QByteArray& chunk) {
        QStringList texts;
        m_buffer.append(chunk);
        int end = m_buffer.indexOf("\n\n");
        while (end >= 0) {
            // By size: the overload for a byte array stops at a zero byte.
            QString text = QString::fromUtf8(m_buffer.constData(), end);
            text.remove(QStringLiteral("data:"), Qt::CaseSensitive);
            m_buffer = m_buffer.mid(end + 2);
            texts.append(text);
            end = m_buffer.indexOf("\n\n");
        }
        return texts;
    }

    int pendingSize() const { return m_buffer.size(); }

private:
    QByteArray m_buffer;
};
