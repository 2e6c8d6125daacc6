#pragma once

#include <afx.h>
#include <afxtempl.h>

#include <cstdint>

/// Who wrote a message.
constexpr std::uint32_t kChatRoleUser = 0;
constexpr std::uint32_t kChatRoleAssistant = 1;

/// One message of a conversation.
struct SingleChatUnit {
    std::uint32_t role = kChatRoleUser;
    CString message;
    /// Seconds since 1970, UTC.
    std::int64_t time = 0;
};

using SingleChatUnitList = CArray<SingleChatUnit, const SingleChatUnit&>;

/// One session: its id on the service, its title and its messages, oldest first. A value type: copies share
/// no mutable state.
class ZR_AiChatSingleChatRecord : public CObject {
    DECLARE_SERIAL(ZR_AiChatSingleChatRecord)

public:
    ZR_AiChatSingleChatRecord() = default;
    ZR_AiChatSingleChatRecord(const ZR_AiChatSingleChatRecord& other);
    ZR_AiChatSingleChatRecord& operator=(const ZR_AiChatSingleChatRecord& other);
    ~ZR_AiChatSingleChatRecord() override = default;

    /// A stored record does not load back: the unit count is written as 64 bits and read as 32. The layout is
    /// fixed, including this asymmetry, so neither side may be "repaired". Part of the interface; nothing in
    /// the module calls it.
    void Serialize(CArchive& archive) override;

    /// Empty while the conversation has not been created on the service.
    CString GetSessionId() const { return m_sessionId; }
    void SetSessionId(const CString& sessionId) { m_sessionId = sessionId; }
    /// The text of the first message that was added, whoever wrote it.
    CString GetTitle() const { return m_title; }
    bool IsSession(const CString& sessionId) const;

    /// Appends a message with the current time.
    void AddUnit(std::uint32_t role, const CString& text);
    /// Appends a message with a time in seconds since 1970.
    void AddUnit(std::uint32_t role, const CString& text, std::int64_t time);
    void AddUnit(const SingleChatUnit& unit);

    /// Part of the interface; nothing in the module calls it.
    int GetUnitCount() const;
    /// Replaces the content of `units` with copies of all messages; always true.
    bool GetUnits(SingleChatUnitList& units) const;
    /// False when there are no messages; `unit` is then unchanged. Part of the interface; nothing in the
    /// module calls it.
    bool GetLastUnit(SingleChatUnit& unit) const;
    /// The newest question, empty when there is none.
    CString GetLastUserInput() const;
    /// True when a message contains the text, case-sensitively.
    bool ContainsText(const CString& text) const;

    /// Time of the earliest message, 0 without messages. A time of 0 is replaced by the next message's time.
    /// Part of the interface; nothing in the module calls it.
    std::int64_t GetCreateTime() const;
    /// Time of the latest message, 0 without messages.
    std::int64_t GetUseTime() const;

    /// Removes all messages and clears the title and the session id.
    void Clear();

private:
    CString m_sessionId;
    CString m_title;
    SingleChatUnitList m_units;
};

/// Sessions in the order in which they were added.
using ZR_AiChatSessionList = CArray<ZR_AiChatSingleChatRecord, const ZR_AiChatSingleChatRecord&>;

/// Replaces the content of `target` with copies of all records of `source`.
void copySessionList(const ZR_AiChatSessionList& source, ZR_AiChatSessionList& target);
