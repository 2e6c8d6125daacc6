#include "chat/ZR_AiChatSingleChatRecord.h"

#include <chrono>

#include "host/core/ZR_ZentriWideText.h"

namespace {

constexpr DWORD kArchiveVersion = 1;
constexpr UINT kSchema = 1;

std::int64_t secondsSince1970() {
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

}  // namespace

IMPLEMENT_SERIAL(ZR_AiChatSingleChatRecord, CObject, kSchema)

// CObject cannot be copied, so the base is default-constructed and the assignment copies the members.
ZR_AiChatSingleChatRecord::ZR_AiChatSingleChatRecord(const ZR_AiChatSingleChatRecord& other) : CObject() {
    *this = other;
}

ZR_AiChatSingleChatRecord& ZR_AiChatSingleChatRecord::operator=(const ZR_AiChatSingleChatRecord& other) {
    if (this != &other) {
        m_sessionId = other.m_sessionId;
        m_title = other.m_title;
        other.GetUnits(m_units);
    }
    return *this;
}

void ZR_AiChatSingleChatRecord::Serialize(CArchive& archive) {
    CObject::Serialize(archive);
    if (archive.IsStoring()) {
        archive << kArchiveVersion;
        archive << m_sessionId;
        archive << m_title;
        archive << static_cast<LONGLONG>(m_units.GetCount());
        for (INT_PTR i = 0; i < m_units.GetCount(); ++i) {
            const SingleChatUnit& unit = m_units[i];
            archive << static_cast<DWORD>(unit.role);
            archive << unit.message;
            archive << static_cast<LONGLONG>(unit.time);
        }
        return;
    }

    m_units.RemoveAll();
    DWORD ignoredVersion = 0;
    archive >> ignoredVersion;
    archive >> m_sessionId;
    archive >> m_title;
    DWORD count = 0;
    archive >> count;
    // A count larger than the archive's content ends with the archive's end-of-file exception.
    for (DWORD i = 0; i < count; ++i) {
        DWORD role = 0;
        LONGLONG time = 0;
        SingleChatUnit unit;
        archive >> role;
        archive >> unit.message;
        archive >> time;
        unit.role = role;
        unit.time = time;
        m_units.Add(unit);
    }
}

bool ZR_AiChatSingleChatRecord::IsSession(const CString& sessionId) const {
    return sameText(m_sessionId, sessionId);
}

void ZR_AiChatSingleChatRecord::AddUnit(std::uint32_t role, const CString& text) {
    AddUnit(role, text, secondsSince1970());
}

void ZR_AiChatSingleChatRecord::AddUnit(std::uint32_t role, const CString& text, std::int64_t time) {
    SingleChatUnit unit;
    unit.role = role;
    unit.message = text;
    unit.time = time;
    AddUnit(unit);
}

void ZR_AiChatSingleChatRecord::AddUnit(const SingleChatUnit& unit) {
    if (m_units.IsEmpty()) {
        m_title = unit.message;
    }
    m_units.Add(unit);
}

int ZR_AiChatSingleChatRecord::GetUnitCount() const {
    return static_cast<int>(m_units.GetCount());
}

bool ZR_AiChatSingleChatRecord::GetUnits(SingleChatUnitList& units) const {
    units.RemoveAll();
    units.Copy(m_units);
    return true;
}

bool ZR_AiChatSingleChatRecord::GetLastUnit(SingleChatUnit& unit) const {
    if (m_units.IsEmpty()) {
        return false;
    }
    unit = m_units[m_units.GetUpperBound()];
    return true;
}

CString ZR_AiChatSingleChatRecord::GetLastUserInput() const {
    for (INT_PTR i = m_units.GetUpperBound(); i >= 0; --i) {
        if (m_units[i].role == kChatRoleUser) {
            return m_units[i].message;
        }
    }
    return CString();
}

bool ZR_AiChatSingleChatRecord::ContainsText(const CString& text) const {
    for (INT_PTR i = 0; i < m_units.GetCount(); ++i) {
        if (containsText(m_units[i].message, text)) {
            return true;
        }
    }
    return false;
}

std::int64_t ZR_AiChatSingleChatRecord::GetCreateTime() const {
    std::int64_t earliest = 0;
    for (INT_PTR i = 0; i < m_units.GetCount(); ++i) {
        const std::int64_t time = m_units[i].time;
        if (earliest == 0 || time < earliest) {
            earliest = time;
        }
    }
    return earliest;
}

std::int64_t ZR_AiChatSingleChatRecord::GetUseTime() const {
    std::int64_t latest = 0;
    for (INT_PTR i = 0; i < m_units.GetCount(); ++i) {
        const std::int64_t time = m_units[i].time;
        if (latest == 0 || time > latest) {
            latest = time;
        }
    }
    return latest;
}

void ZR_AiChatSingleChatRecord::Clear() {
    m_units.RemoveAll();
    m_title.Empty();
    m_sessionId.Empty();
}

void copySessionList(const ZR_AiChatSessionList& source, ZR_AiChatSessionList& target) {
    if (&source != &target) {
        target.RemoveAll();
        target.Copy(source);
    }
}
