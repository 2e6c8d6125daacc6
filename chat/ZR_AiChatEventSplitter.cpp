#include "chat/ZR_AiChatEventSplitter.h"

#include <cstring>

namespace {

constexpr char kLineFeed = '\n';
constexpr int kTerminatorSize = 2;

/// Index of the first empty line at or after `from`, or -1.
int indexOfTerminator(const QByteArray& bytes, int from) {
    const char* const begin = bytes.constData();
    const char* const end = begin + bytes.size();
    const char* at = begin + from;
    while (end - at >= kTerminatorSize) {
        at = static_cast<const char*>(std::memchr(at, kLineFeed, static_cast<std::size_t>(end - at - 1)));
        if (at == nullptr) {
            return -1;
        }
        if (at[1] == kLineFeed) {
            return static_cast<int>(at - begin);
        }
        ++at;
    }
    return -1;
}

/// The text without its field names. A single pass copies the remaining text once, however many there are.
QString withoutFieldNames(const QString& text) {
    const QLatin1String fieldName("data:");
    int found = text.indexOf(fieldName);
    if (found < 0) {
        return text;
    }
    QString result;
    result.reserve(text.size() - fieldName.size());
    int from = 0;
    while (found >= 0) {
        result.append(text.constData() + from, found - from);
        from = found + fieldName.size();
        found = text.indexOf(fieldName, from);
    }
    result.append(text.constData() + from, text.size() - from);
    return result;
}

}  // namespace

void ZR_AiChatEventSplitter::append(const QByteArray& bytes) {
    // Consumed bytes are dropped only once they make up half of the buffer, so that each byte is moved once
    // on average.
    if (m_begin > 0 && m_begin >= m_buffer.size() - m_begin) {
        m_buffer.remove(0, m_begin);
        m_scan -= m_begin;
        m_begin = 0;
    }
    m_buffer.append(bytes);
}

bool ZR_AiChatEventSplitter::takeEvent(QString& text) {
    const int end = indexOfTerminator(m_buffer, m_scan);
    if (end < 0) {
        // The last byte may be the first half of an empty line.
        m_scan = qMax(m_begin, m_buffer.size() - 1);
        return false;
    }
    text = withoutFieldNames(QString::fromUtf8(m_buffer.constData() + m_begin, end - m_begin));
    m_begin = end + kTerminatorSize;
    m_scan = m_begin;
    return true;
}

QByteArray ZR_AiChatEventSplitter::pendingTail(int limit) const {
    return m_buffer.right(qMin(limit, pendingSize()));
}
