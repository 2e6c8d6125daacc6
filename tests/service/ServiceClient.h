#pragma once

#include <gtest/gtest.h>
#include <httplib.h>

#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/service/PlainClient.h"

namespace zentri::service {

/// The reply to a chat call.
struct ChatReply {
    int status = 0;
    bool complete = false;  ///< The reply ended properly, with its terminating chunk or full length.
    std::string type;
    std::string bytes;
    PlainClient stream;
};

/// A client of a running service with one user's token, over real sockets.
class ServiceClient {
public:
    using Json = nlohmann::json;
    /// Called after each chunk of a chat reply; returning false closes the connection.
    using Watch = std::function<bool(const ChatReply&)>;

    explicit ServiceClient(int port, std::string token = "anna") : m_port(port), m_token(std::move(token)) {}

    /// Makes a session call and returns its envelope. Fails the test unless the reply is HTTP 200 with JSON.
    Json call(const std::string& path) const {
        httplib::Client client("127.0.0.1", m_port);
        client.set_tcp_nodelay(true);
        const httplib::Result result = client.Post(path, headers(), "{}", "application/json");
        if (!result) {
            ADD_FAILURE() << path << ": " << httplib::to_string(result.error());
            return {};
        }
        EXPECT_EQ(result->status, 200) << path;
        EXPECT_EQ(result->get_header_value("Content-Type"), "application/json");
        return Json::parse(result->body, nullptr, false);
    }

    std::string createSession() const { return call("/zr/ai/session/create").at("data").get<std::string>(); }
    Json sessions() const { return call("/zr/ai/session/user").at("data"); }
    Json messages(const std::string& session) const {
        return call("/zr/ai/chat/user/session/" + session).at("data");
    }

    ChatReply chat(const std::string& session, const std::string& question, const Watch& watch = {}) const {
        const Json body{{"userInput", question}, {"model", "deepseek-chat"}, {"userChatSessionId", session}};
        return chatRaw(body.dump(4), watch);
    }

    ChatReply chatRaw(const std::string& body, const Watch& watch = {}) const {
        httplib::Client client("127.0.0.1", m_port);
        client.set_tcp_nodelay(true);
        client.set_read_timeout(30);
        ChatReply reply;
        httplib::Request request;
        request.method = "POST";
        request.path = "/zr/ai/caddraw/chat";
        request.headers = headers();
        request.set_header("Content-Type", "application/json");
        request.set_header("Accept", "text/event-stream");
        request.set_header("Cache-Control", "no-cache");
        request.body = body;
        request.response_handler = [&](const httplib::Response& response) {
            reply.status = response.status;
            reply.type = response.get_header_value("Content-Type");
            return true;
        };
        request.content_receiver = [&](const char* data, std::size_t length, std::uint64_t, std::uint64_t) {
            reply.bytes.append(data, length);
            reply.stream.receive({data, length});
            return !watch || watch(reply);
        };
        reply.complete = static_cast<bool>(client.send(request));
        return reply;
    }

    /// Polls until the session has at least `count` messages; fails the test after 30 seconds.
    Json waitForMessages(const std::string& session, std::size_t count) const {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        Json list;
        do {
            list = messages(session);
            if (list.size() >= count) {
                return list;
            }
            std::this_thread::yield();
        } while (std::chrono::steady_clock::now() < end);
        ADD_FAILURE() << "session has " << list.size() << " messages, expected " << count;
        return list;
    }

private:
    httplib::Headers headers() const {
        return m_token.empty() ? httplib::Headers{} : httplib::Headers{{"Authorization", m_token}};
    }

    int m_port;
    std::string m_token;
};

}  // namespace zentri::service
