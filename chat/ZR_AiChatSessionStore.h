#pragma once

#include <afx.h>

#include <QHash>
#include <QString>

#include "chat/ZR_AiChatSingleChatRecord.h"

/// The manager's list of sessions, in the order in which they were added. Looking one up by its id takes
/// constant time.
class ZR_AiChatSessionStore {
public:
    const ZR_AiChatSessionList& list() const { return m_list; }

    /// The first session with this id, or null. Valid until the store changes.
    const ZR_AiChatSingleChatRecord* find(const CString& sessionId) const;

    /// Replaces the first session with the same id by a copy of the record, or appends the copy.
    void put(const ZR_AiChatSingleChatRecord& record);

    /// Replaces all sessions with copies of these. If several have the same id, find() returns the first.
    void replaceAll(const ZR_AiChatSessionList& sessions);

private:
    ZR_AiChatSessionList m_list;
    QHash<QString, INT_PTR> m_firstIndexOfId;
};
