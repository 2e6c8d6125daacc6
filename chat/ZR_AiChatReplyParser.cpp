#include "chat/ZR_AiChatReplyParser.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include "host/core/ZR_ZentriText.h"

namespace {

constexpr int kSuccessCode = 200;
constexpr double kLargestTimeInSeconds = 1e12;
constexpr std::int64_t kMillisecondsPerSecond = 1000;
/// A larger double does not fit into a 64-bit integer.
constexpr double kIntegerLimit = 9.2e18;

/// An empty object when the text is not a JSON object.
QJsonObject parseObject(const QString& body) {
    return QJsonDocument::fromJson(body.toUtf8()).object();
}

ZR_AiChatReplyStatus statusOf(const QJsonObject& envelope) {
    ZR_AiChatReplyStatus status;
    status.code = envelope.value(QLatin1String("code")).toInt();
    status.message = envelope.value(QLatin1String("msg")).toString();
    return status;
}

/// The service gives times in seconds or milliseconds; the larger numbers are milliseconds.
std::int64_t timeInSeconds(const QJsonValue& value) {
    const double number = value.toDouble();
    if (!(number > -kIntegerLimit && number < kIntegerLimit)) {
        return 0;
    }
    const auto time = static_cast<std::int64_t>(number);
    return time > static_cast<std::int64_t>(kLargestTimeInSeconds) ? time / kMillisecondsPerSecond : time;
}

}  // namespace

bool ZR_AiChatReplyStatus::isSuccess() const {
    return code == kSuccessCode && message == QLatin1String("success");
}

CString parseCreatedSession(const QString& body) {
    const QJsonObject envelope = parseObject(body);
    if (!statusOf(envelope).isSuccess()) {
        return CString();
    }
    return toCString(envelope.value(QLatin1String("data")).toString());
}

ZR_AiChatReplyStatus parseSessionIds(const QString& body, CStringArray& ids) {
    const QJsonObject envelope = parseObject(body);
    const ZR_AiChatReplyStatus status = statusOf(envelope);
    if (status.isSuccess()) {
        ids.RemoveAll();
        const QJsonArray sessions = envelope.value(QLatin1String("data")).toArray();
        for (const QJsonValue session : sessions) {
            ids.Add(toCString(session.toObject().value(QLatin1String("userChatSessionId")).toString()));
        }
    }
    return status;
}

ZR_AiChatReplyStatus parseSessionChats(const QString& body, ZR_AiChatSingleChatRecord& record) {
    const QJsonObject envelope = parseObject(body);
    const ZR_AiChatReplyStatus status = statusOf(envelope);
    if (!status.isSuccess()) {
        return status;
    }
    const QJsonArray messages = envelope.value(QLatin1String("data")).toArray();
    for (const QJsonValue message : messages) {
        const QJsonObject item = message.toObject();
        const QString role = item.value(QLatin1String("role")).toString();
        const bool fromUser = role == QLatin1String("user");
        if (!fromUser && role != QLatin1String("assistant")) {
            continue;
        }
        record.AddUnit(fromUser ? kChatRoleUser : kChatRoleAssistant,
                       toCString(item.value(QLatin1String("message")).toString()),
                       timeInSeconds(item.value(QLatin1String("createTime"))));
    }
    return status;
}
