#include <cstdint>
#include <cstdlib>

#include "chat/ZR_AiChatReplyParser.h"

/// Takes a body for the reply of every call. What is kept of it must agree with the status.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString body = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size));
    parseCreatedSession(body);

    CStringArray ids;
    if (!parseSessionIds(body, ids).isSuccess() && ids.GetCount() != 0) {
        std::abort();
    }

    ZR_AiChatSingleChatRecord record;
    if (!parseSessionChats(body, record).isSuccess() && record.GetUnitCount() != 0) {
        std::abort();
    }
    SingleChatUnitList units;
    record.GetUnits(units);
    for (INT_PTR i = 0; i < units.GetCount(); ++i) {
        if (units[i].role > chatRoleAssistant) {
            std::abort();
        }
    }
    if (units.GetCount() > 0 && record.GetTitle() != units[0].message) {
        std::abort();
    }
    return 0;
}
