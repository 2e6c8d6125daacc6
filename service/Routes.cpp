#include "service/Routes.h"

#include <httplib.h>

#include <nlohmann/json.hpp>

#include "service/ChatStream.h"
#include "service/Clock.h"
#include "service/Log.h"
#include "service/Text.h"
#include "service/Version.h"

namespace zentri::service {

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

constexpr const char* kJson = "application/json";
constexpr const char* kEventStream = "text/event-stream";
constexpr const char* kPlainText = "text/plain; charset=utf-8";

constexpr int kOk = 200;
constexpr int kBadRequest = 400;
constexpr int kUnauthorized = 401;
constexpr int kNotFound = 404;
constexpr int kTooLarge = 413;
constexpr int kServerError = 500;

constexpr const char* kSuccess = "success";
constexpr const char* kNoToken = "未登录：缺少访问令牌";
/// The same text for an unknown session and another user's, so that a reply does not reveal which ids exist.
constexpr const char* kNoSession = "会话不存在";

/// The envelope as JSON, with its members in reading order; invalid UTF-8 is replaced.
std::string envelope(int code, const std::string& message, const json& data) {
    ordered_json object;
    object["code"] = code;
    object["msg"] = message;
    object["data"] = data;
    return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

/// The envelope of a session call's reply.
struct Reply {
    int code = kOk;
    std::string message = kSuccess;
    json data;
};

/// Sends a session call's reply after applying the envelope faults.
void send(httplib::Response& response, Reply reply, const RequestFaults& faults) {
    if (const auto code = faults.number(FaultKind::Code)) {
        reply.code = static_cast<int>(*code);
    }
    if (const Fault* message = faults.find(FaultKind::Message)) {
        reply.message = message->value;
    }
    if (const Fault* data = faults.find(FaultKind::Data)) {
        reply.data = json::parse(data->value);
    }
    std::string body = envelope(reply.code, reply.message, reply.data);
    if (faults.has(FaultKind::BrokenJson)) {
        body.resize(body.size() / 2);
    }
    response.set_content(body, kJson);
}

/// Rejects a request with an HTTP error status and an envelope that gives the reason.
void refuse(httplib::Response& response, int status, const std::string& message) {
    response.status = status;
    response.set_content(envelope(status, message, nullptr), kJson);
}

const char* textOfStatus(int status) {
    switch (status) {
        case kNotFound:
            return "没有这个调用";
        case kTooLarge:
            return "请求太大";
        case kServerError:
            return "服务内部错误";
        default:
            return "请求无法处理";
    }
}

std::string requiredText(const json& body, const char* member) {
    const auto found = body.find(member);
    if (found == body.end() || !found->is_string()) {
        throw std::invalid_argument(std::string("缺少文本成员 ") + member);
    }
    return found->get<std::string>();
}

/// The content of a chat request.
struct ChatRequest {
    std::string question;
    std::string model;
    std::string sessionId;
};

/// Parses and validates a chat request; the question's line ends become LF. Throws std::invalid_argument with
/// a message for the client.
ChatRequest chatRequestOf(const std::string& text) {
    const json body = json::parse(text, nullptr, false);
    if (!body.is_object()) {
        throw std::invalid_argument("请求不是 JSON 对象");
    }
    ChatRequest request;
    request.question = requiredText(body, "userInput");
    request.sessionId = requiredText(body, "userChatSessionId");
    if (body.contains("model")) {
        request.model = requiredText(body, "model");
    }
    if (trimmed(request.question).empty()) {
        throw std::invalid_argument("问题是空的");
    }
    LineEndNormalizer lineEnds;
    request.question = lineEnds.feed(request.question) + lineEnds.finish();
    return request;
}

}  // namespace

void Routes::addTo(httplib::Server& server) {
    using httplib::Request;
    using httplib::Response;
    server.Get("/", [this](const Request&, Response& response) { health(response); });
    server.Post("/zr/ai/caddraw/chat", [this](const Request& q, Response& r) { chat(q, r); });
    server.Post("/zr/ai/session/create", [this](const Request& q, Response& r) { createSession(q, r); });
    server.Post("/zr/ai/session/user", [this](const Request& q, Response& r) { listSessions(q, r); });
    // The length limit bounds the recursion depth of std::regex.
    server.Post("/zr/ai/chat/user/session/([^/]{0,200})",
                [this](const Request& q, Response& r) { readSession(q, r); });
    if (m_parts.allowFaults) {
        server.Post("/test/faults", [this](const Request& q, Response& r) { addFaults(q, r); });
        server.Get("/test/faults", [this](const Request&, Response& r) {
            send(r, {kOk, kSuccess, m_parts.faults.toJson()}, {});
        });
        server.Delete("/test/faults", [this](const Request&, Response& r) {
            m_parts.faults.clear();
            send(r, {}, {});
        });
    }
    server.set_error_handler([](const Request&, Response& response) {
        if (response.body.empty()) {
            refuse(response, response.status, textOfStatus(response.status));
        }
    });
    server.set_exception_handler([](const Request& request, Response& response, std::exception_ptr error) {
        try {
            std::rethrow_exception(error);
        } catch (const std::exception& exception) {
            logLine(request.path + ": " + exception.what());
        } catch (...) {
            logLine(request.path + ": unknown error");
        }
        refuse(response, kServerError, textOfStatus(kServerError));
    });
}

void Routes::health(httplib::Response& response) {
    response.set_content("zentri-service " + std::string(kVersion) +
                             " is running.\nAnswers: " + m_parts.answerer.description() +
                             "\nUsers: " + std::to_string(m_parts.database.userCount()) +
                             ", sessions: " + std::to_string(m_parts.database.sessionCount()) +
                             "\n\nCalls (all POST, token in the Authorization header):\n"
                             "  /zr/ai/session/create\n  /zr/ai/session/user\n"
                             "  /zr/ai/chat/user/session/<id>\n  /zr/ai/caddraw/chat\n",
                         kPlainText);
}

bool Routes::begin(const RequestFaults& faults, httplib::Response& response) {
    if (const auto wait = faults.number(FaultKind::SlowHeaders)) {
        m_parts.stop.waitFor(std::chrono::milliseconds(*wait));
    }
    if (const auto status = faults.number(FaultKind::Status)) {
        refuse(response, static_cast<int>(*status), textOfStatus(static_cast<int>(*status)));
        return false;
    }
    return true;
}

std::optional<std::int64_t> Routes::userOf(const httplib::Request& request) {
    // The header is the bare token, without a scheme such as "Bearer".
    const std::string token = request.get_header_value("Authorization");
    if (token.empty()) {
        return std::nullopt;
    }
    return m_parts.database.userOfToken(token);
}

void Routes::createSession(const httplib::Request& request, httplib::Response& response) {
    const RequestFaults faults = m_parts.faults.take(Call::Create);
    if (!begin(faults, response)) {
        return;
    }
    Reply reply{kUnauthorized, kNoToken, {}};
    if (const auto user = userOf(request)) {
        reply = {kOk, kSuccess, m_parts.database.createSession(*user, nowMs())};
    }
    log(request, std::to_string(reply.code));
    send(response, std::move(reply), faults);
}

void Routes::listSessions(const httplib::Request& request, httplib::Response& response) {
    const RequestFaults faults = m_parts.faults.take(Call::List);
    if (!begin(faults, response)) {
        return;
    }
    Reply reply{kUnauthorized, kNoToken, {}};
    if (const auto user = userOf(request)) {
        reply = {kOk, kSuccess, json::array()};
        for (const Session& session : m_parts.database.sessionsOf(*user)) {
            reply.data.push_back({{"userChatSessionId", session.id},
                                  {"sessionTitle", session.title},
                                  {"useTime", localTimeText(session.useTimeMs)},
                                  {"createTime", localTimeText(session.createTimeMs)}});
        }
    }
    log(request, std::to_string(reply.code) + ", " + std::to_string(reply.data.size()) + " sessions");
    send(response, std::move(reply), faults);
}

void Routes::readSession(const httplib::Request& request, httplib::Response& response) {
    const RequestFaults faults = m_parts.faults.take(Call::Read);
    if (!begin(faults, response)) {
        return;
    }
    Reply reply{kUnauthorized, kNoToken, {}};
    if (const auto user = userOf(request)) {
        reply = {kNotFound, kNoSession, {}};
        if (const auto messages = m_parts.database.messagesOf(*user, request.matches[1].str())) {
            reply = {kOk, kSuccess, json::array()};
            for (const Message& message : *messages) {
                reply.data.push_back({{"role", message.role == Role::User ? "user" : "assistant"},
                                      {"message", message.text},
                                      {"createTime", message.timeMs}});
            }
        }
    }
    log(request, std::to_string(reply.code));
    send(response, std::move(reply), faults);
}

void Routes::chat(const httplib::Request& request, httplib::Response& response) {
    const RequestFaults faults = m_parts.faults.take(Call::Chat);
    if (!begin(faults, response)) {
        return;
    }
    const auto user = userOf(request);
    if (!user) {
        log(request, "401");
        return refuse(response, kUnauthorized, kNoToken);
    }
    ChatRequest chatRequest;
    try {
        chatRequest = chatRequestOf(request.body);
    } catch (const std::invalid_argument& error) {
        log(request, "400");
        return refuse(response, kBadRequest, error.what());
    }
    if (!m_parts.database.ownsSession(*user, chatRequest.sessionId)) {
        log(request, "404");
        return refuse(response, kNotFound, kNoSession);
    }
    m_parts.database.addMessage(chatRequest.sessionId, {Role::User, chatRequest.question, nowMs()});
    Conversation conversation{*m_parts.database.messagesOf(*user, chatRequest.sessionId), chatRequest.model};

    response.set_header("Cache-Control", "no-cache");
    response.set_chunked_content_provider(
        kEventStream, [this, request, conversation = std::move(conversation),
                       sessionId = chatRequest.sessionId, faults](size_t, httplib::DataSink& sink) {
            bool proper = false;
            try {
                proper = stream(sink, conversation, sessionId, faults);
            } catch (const std::exception& error) {
                logLine(request.path + ": " + error.what());
            }
            log(request, proper ? "answered" : "cut");
            if (proper) {
                sink.done();
            }
            // False closes the connection without the terminating chunk: the client detects the truncation.
            return proper;
        });
}

bool Routes::stream(httplib::DataSink& sink, const Conversation& conversation, const std::string& sessionId,
                    const RequestFaults& faults) {
    const ChatStream::Connection connection{
        [&sink](std::string_view bytes) { return sink.write(bytes.data(), bytes.size()); },
        [&sink] { return sink.is_writable(); }};
    ChatStream chat(connection, m_parts.stop, faults);
    const auto store = [&] {
        // A truncated answer is stored as far as it was sent, because the client keeps that part too.
        if (!chat.delivered().empty()) {
            m_parts.database.addMessage(sessionId, {Role::Assistant, chat.delivered(), nowMs()});
        }
    };
    try {
        m_parts.answerer.answer(conversation, chat);
    } catch (...) {
        store();
        throw;
    }
    if (faults.has(FaultKind::NeverEnding)) {
        // finish() repeats the answer; only the original goes into the history.
        store();
        return chat.finish() == ChatStream::End::Proper;
    }
    const ChatStream::End end = chat.finish();
    store();
    return end == ChatStream::End::Proper;
}

void Routes::addFaults(const httplib::Request& request, httplib::Response& response) {
    try {
        const json body = json::parse(request.body, nullptr, false);
        std::vector<Fault> faults;
        if (body.is_array()) {
            for (const json& object : body) {
                faults.push_back(faultFromJson(object));
            }
        } else {
            faults.push_back(faultFromJson(body));
        }
        for (Fault& fault : faults) {
            m_parts.faults.add(std::move(fault));
        }
        send(response, {}, {});
    } catch (const std::exception& error) {
        refuse(response, kBadRequest, error.what());
    }
}

void Routes::log(const httplib::Request& request, const std::string& outcome) {
    if (m_parts.verbose) {
        logLine(request.method + " " + request.path + ": " + outcome);
    }
}

}  // namespace zentri::service
