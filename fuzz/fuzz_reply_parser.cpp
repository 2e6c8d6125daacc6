#include <cstdint>
#include <cstdlib>

#include "chat/ZR_AiChatReplyParser.h"

namespace {

/// The body for an input: the input itself, or the input inside a reply that passes the envelope check, which
/// random input would hardly do.
QString bodyOf(unsigned char kind, const QString& text) {
    constexpr unsigned char kKinds = 4;
    const QString success = QStringLiteral(R"({"code":200,"msg":"success","data":%1})");
    switch (kind % kKinds) {
        case 0:
            return text;
        case 1:
            return success.arg(text);
        case 2:
            return success.arg(
                QStringLiteral(R"([{"role":"user","message":"m","createTime":%1}])").arg(text));
        default:
            return success.arg(
                QStringLiteral(R"([{"userChatSessionId":%1,"role":%1,"message":%1}])").arg(text));
    }
}

}  // namespace

/// Parses a body as the reply of every call. The result must be consistent with the status.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const char* const bytes = reinterpret_cast<const char*>(data);
    const QString body = bodyOf(data[0], QString::fromUtf8(bytes + 1, static_cast<int>(size - 1)));
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
        if (units[i].role > kChatRoleAssistant) {
            std::abort();
        }
    }
    if (units.GetCount() > 0 && record.GetTitle() != units[0].message) {
        std::abort();
    }
    return 0;
}
