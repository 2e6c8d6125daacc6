#pragma once

#include <afx.h>

#include <QHash>
#include <QString>

#include "chat/ZR_AiChatSingleChatRecord.h"

/// The manager's list of sessions, in the order in which they were added. Finding one by its id costs the
/// same however many there are.
class ZR_AiChatSessionStore {
public:
    const ZR_AiChatSessionList& list() const { return m_list; }

    /// The first session with this id, or null. Valid until the store changes.
    const ZR_AiChatSingleChatRecord* find(const CString& sessionId) const;

    /// Puts a copy of the record in place of the first session with its id, or at the end.
    void put(const ZR_AiChatSingleChatRecord& record);

    /// Takes copies of these sessions in place of all its own. Several may have one id: then the first is
    /// found.
    void replaceAll(const ZR_AiChatSessionList& sessions);

private:
    ZR_AiChatSessionList m_list;
    QHash<QString, INT_PTR> m_firstIndexOfId;
};
