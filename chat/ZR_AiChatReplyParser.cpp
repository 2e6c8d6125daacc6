#include "chat/ZR_AiChatReplyParser.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QVariant>
#include <limits>

#include "host/core/ZR_ZentriText.h"

namespace {

constexpr int kSuccessCode = 200;
constexpr std::int64_t kLargestTimeInSeconds = 1000000000000;
constexpr std::int64_t kMillisecondsPerSecond = 1000;
/// 2 to the power of 63: the first double beyond the 64-bit integers.
constexpr double kIntegerLimit = 9223372036854775808.0;

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

/// The number without its fraction; 0 for a value that is not a number or does not fit.
std::int64_t toInteger(const QJsonValue& value) {
    const QVariant number = value.toVariant();
    if (number.type() == QVariant::LongLong) {
        return number.toLongLong();
    }
    // A fraction, an exponent or a large number. Before Qt 5.15 every number is a double, and the largest
    // integers have been rounded up to the limit.
    const double real = value.toDouble();
    if (real == kIntegerLimit) {
        return std::numeric_limits<std::int64_t>::max();
    }
    return real >= -kIntegerLimit && real < kIntegerLimit ? static_cast<std::int64_t>(real) : 0;
}

/// The service gives times in seconds or milliseconds; the larger numbers are milliseconds.
std::int64_t timeInSeconds(const QJsonValue& value) {
    const std::int64_t time = toInteger(value);
    return time > kLargestTimeInSeconds ? time / kMillisecondsPerSecond : time;
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
