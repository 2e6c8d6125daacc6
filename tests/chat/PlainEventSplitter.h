#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The rule by which an answer stream is split into events, step by step and without regard to speed: the
/// oracle for the module's splitter.
class PlainEventSplitter {
public:
    /// Appends a chunk and returns the texts of the events that are complete now.
    QStringList takeChunk(const QByteArray& chunk) {
        QStringList texts;
        m_buffer.append(chunk);
        int end = m_buffer.indexOf("\n\n");
        while (end >= 0) {
            // With the size: the overload for a byte array stops at a null byte.
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
