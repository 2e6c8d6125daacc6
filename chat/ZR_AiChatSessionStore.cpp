#include "chat/ZR_AiChatSessionStore.h"

#include "host/core/ZR_ZentriText.h"

const ZR_AiChatSingleChatRecord* ZR_AiChatSessionStore::find(const CString& sessionId) const {
    const auto found = m_firstIndexOfId.constFind(toQString(sessionId));
    return found != m_firstIndexOfId.constEnd() ? &m_list[*found] : nullptr;
}

void ZR_AiChatSessionStore::put(const ZR_AiChatSingleChatRecord& record) {
    const QString sessionId = toQString(record.GetSessionId());
    const auto found = m_firstIndexOfId.constFind(sessionId);
    if (found != m_firstIndexOfId.constEnd()) {
        m_list[*found] = record;
    } else {
        m_firstIndexOfId.insert(sessionId, m_list.Add(record));
    }
}

void ZR_AiChatSessionStore::replaceAll(const ZR_AiChatSessionList& sessions) {
    copySessionList(sessions, m_list);
    m_firstIndexOfId.clear();
    m_firstIndexOfId.reserve(static_cast<int>(m_list.GetCount()));
    for (INT_PTR i = m_list.GetUpperBound(); i >= 0; --i) {
        m_firstIndexOfId.insert(toQString(m_list[i].GetSessionId()), i);
    }
}
