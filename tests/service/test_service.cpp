#include <gtest/gtest.h>
#include <netinet/tcp.h>
#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "tests/service/RunningService.h"

namespace zentri::service {
namespace {

using Json = nlohmann::json;

using Conversation = std::vector<std::pair<std::string, std::string>>;

/// Roles and texts of the messages in a read call's reply.
Conversation conversationOf(const Json& messages) {
    Conversation conversation;
    for (const Json& message : messages) {
        conversation.emplace_back(message.at("role"), message.at("message"));
    }
    return conversation;
}

/// "2024-05-31 14:03:59"
bool looksLikeATime(const std::string& text) {
    std::string shape = text;
    std::replace_if(
        shape.begin(), shape.end(), [](char c) { return c >= '0' && c <= '9'; }, '0');
    return shape == "0000-00-00 00:00:00";
}

/// For each connection that this process has accepted on a port: whether TCP_NODELAY is set.
std::vector<bool> sendsAtOnce(int port) {
    rlimit files{};
    getrlimit(RLIMIT_NOFILE, &files);
    std::vector<bool> connections;
    for (int socket = 0; socket < static_cast<int>(std::min<rlim_t>(files.rlim_cur, 1024)); ++socket) {
        sockaddr_in own{};
        sockaddr_in other{};
        socklen_t size = sizeof own;
        if (getsockname(socket, reinterpret_cast<sockaddr*>(&own), &size) != 0 || own.sin_family != AF_INET ||
            ntohs(own.sin_port) != port) {
            continue;
        }
        size = sizeof other;
        if (getpeername(socket, reinterpret_cast<sockaddr*>(&other), &size) != 0) {
            continue;
        }
        int noDelay = 0;
        size = sizeof noDelay;
        getsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &noDelay, &size);
        connections.push_back(noDelay != 0);
    }
    return connections;
}

TEST(Service, CreatesASession) {
    RunningService service;
    const Json reply = service.client().call("/zr/ai/session/create");
    EXPECT_EQ(reply.size(), 3U);
    EXPECT_EQ(reply.at("code"), 200);
    EXPECT_EQ(reply.at("msg"), "success");
    EXPECT_TRUE(reply.at("data").is_string());
    EXPECT_FALSE(reply.at("data").get<std::string>().empty());
}

TEST(Service, NewUserHasAnEmptySessionList) {
    RunningService service;
    const Json reply = service.client().call("/zr/ai/session/user");
    EXPECT_EQ(reply.at("code"), 200);
    EXPECT_EQ(reply.at("data"), Json::array());
}

TEST(Service, StreamsTheAnswerAndStoresBothMessages) {
    RunningService service;
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    const ChatReply reply = client.chat(session, "怎么画圆？");
    EXPECT_EQ(reply.status, 200);
    EXPECT_TRUE(reply.complete);
    EXPECT_EQ(reply.type, "text/event-stream");
    EXPECT_GT(reply.stream.events().size(), 5U);
    EXPECT_EQ(reply.stream.unfinished(), "");
    EXPECT_NE(reply.stream.answer().find("【CIRCLE】"), std::string::npos);
    EXPECT_NE(reply.stream.answer().find("\n1. "), std::string::npos);
    EXPECT_EQ(conversationOf(client.messages(session)),
              (Conversation{{"user", "怎么画圆？"}, {"assistant", reply.stream.answer()}}));
}

TEST(Service, ListsSessionsWithFormattedTimes) {
    RunningService service;
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    client.chat(session, "怎么画圆？");
    const Json item = client.sessions().at(0);
    EXPECT_EQ(item.size(), 4U);
    EXPECT_EQ(item.at("userChatSessionId"), session);
    EXPECT_EQ(item.at("sessionTitle"), "怎么画圆？");
    EXPECT_TRUE(looksLikeATime(item.at("useTime"))) << item;
    EXPECT_TRUE(looksLikeATime(item.at("createTime"))) << item;
}

TEST(Service, MessageTimesAreMilliseconds) {
    RunningService service;
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    client.chat(session, "怎么画圆？");
    const Json messages = client.messages(session);
    for (const Json& message : messages) {
        EXPECT_EQ(message.size(), 3U);
        EXPECT_TRUE(message.at("createTime").is_number_integer());
        EXPECT_GT(message.at("createTime").get<std::int64_t>(), 1'000'000'000'000);
    }
    EXPECT_LE(messages[0].at("createTime"), messages[1].at("createTime"));
}

TEST(Service, FollowUpUsesTheSessionsEarlierQuestion) {
    RunningService service;
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    client.chat(session, "怎么画圆");
    const std::string answer = client.chat(session, "那怎么删除?").stream.answer();
    EXPECT_NE(answer.find("画圆"), std::string::npos);
    EXPECT_NE(answer.find("【ERASE】"), std::string::npos);
}

TEST(Service, UserCannotAccessAnotherUsersSession) {
    RunningService service;
    const ServiceClient anna = service.client("anna");
    const ServiceClient bert = service.client("bert");
    const std::string session = anna.createSession();
    EXPECT_EQ(bert.sessions(), Json::array());
    const Json denied = bert.call("/zr/ai/chat/user/session/" + session);
    EXPECT_EQ(denied.at("code"), 404);
    EXPECT_NE(denied.at("msg"), "success");
    EXPECT_TRUE(denied.at("data").is_null());
    // The reply must not reveal whether the session exists.
    EXPECT_EQ(denied, bert.call("/zr/ai/chat/user/session/no-such-session"));
    EXPECT_EQ(denied, bert.call("/zr/ai/chat/user/session/"));
    const ChatReply reply = bert.chat(session, "怎么画圆");
    EXPECT_EQ(reply.status, 404);
    EXPECT_EQ(Json::parse(reply.bytes).at("code"), 404);
    EXPECT_EQ(anna.messages(session), Json::array());
}

TEST(Service, AuthorizationHeaderIsTheBareToken) {
    RunningService service;
    const std::string session = service.client("abc").createSession();
    EXPECT_EQ(service.client("Bearer abc").sessions(), Json::array());
    EXPECT_EQ(service.client("abc").sessions().at(0).at("userChatSessionId"), session);
}

TEST(Service, EveryCallRequiresAToken) {
    RunningService service;
    const ServiceClient nobody = service.client("");
    for (const char* path : {"/zr/ai/session/create", "/zr/ai/session/user", "/zr/ai/chat/user/session/x"}) {
        const Json reply = nobody.call(path);
        EXPECT_EQ(reply.at("code"), 401) << path;
        EXPECT_NE(reply.at("msg"), "success") << path;
    }
    const ChatReply chat = nobody.chat("x", "怎么画圆");
    EXPECT_EQ(chat.status, 401);
    EXPECT_EQ(Json::parse(chat.bytes).at("code"), 401);
}

TEST(Service, InvalidChatRequestIsRejectedAndStoresNothing) {
    RunningService service;
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    const std::string id = Json(session).dump();
    const std::vector<std::string> bodies{
        "",
        "{",
        "[]",
        "null",
        "{}",
        R"({"userInput":"x","model":"m"})",
        R"({"userChatSessionId":)" + id + "}",
        R"({"userInput":3,"userChatSessionId":)" + id + "}",
        R"({"userInput":"x","model":3,"userChatSessionId":)" + id + "}",
        R"({"userInput":" \n ","userChatSessionId":)" + id + "}",
        R"({"userInput":"x","userChatSessionId":null})",
        "{\"userInput\":\"\xFF\",\"userChatSessionId\":" + id + "}",
        std::string(50000, '['),
    };
    for (const std::string& body : bodies) {
        const ChatReply reply = client.chatRaw(body);
        EXPECT_EQ(reply.status, 400) << body.substr(0, 80);
        EXPECT_EQ(Json::parse(reply.bytes, nullptr, false).value("code", 0), 400) << body.substr(0, 80);
    }
    EXPECT_EQ(client.messages(session), Json::array());
}

TEST(Service, ModelIsOptional) {
    RunningService service;
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    EXPECT_EQ(client.chatRaw(Json{{"userInput", "怎么画圆"}, {"userChatSessionId", session}}.dump()).status,
              200);
}

TEST(Service, ErrorsForUnknownPathsMethodsAndHugeBodiesHaveAnEnvelope) {
    RunningService service;
    httplib::Client client("127.0.0.1", service.port());
    for (const char* path : {"/nothing", "/zr/ai/session/create", "/test/faults"}) {
        const httplib::Result result = client.Get(path);
        ASSERT_TRUE(result);
        EXPECT_EQ(result->status, 404) << path;
        EXPECT_EQ(Json::parse(result->body).at("code"), 404) << path;
    }
    const httplib::Result huge = client.Post("/zr/ai/caddraw/chat", {{"Authorization", "anna"}},
                                             std::string(3U << 20U, 'x'), "application/json");
    // The service may close the connection before the whole body has been sent.
    if (huge) {
        EXPECT_EQ(huge->status, 413);
    }
    EXPECT_EQ(service.client().sessions(), Json::array());
}

TEST(Service, VeryLongSessionIdIsNotFound) {
    RunningService service;
    httplib::Client client("127.0.0.1", service.port());
    for (const std::size_t length : {200U, 201U, 7000U}) {
        const httplib::Result result = client.Post("/zr/ai/chat/user/session/" + std::string(length, 'x'),
                                                   {{"Authorization", "anna"}}, "{}", "application/json");
        ASSERT_TRUE(result);
        EXPECT_EQ(Json::parse(result->body).at("code"), 404);
    }
}

TEST(Service, HealthPageNeedsNoToken) {
    RunningService service;
    httplib::Client client("127.0.0.1", service.port());
    const httplib::Result result = client.Get("/");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 200);
    EXPECT_NE(result->body.find("zentri-service"), std::string::npos);
    EXPECT_NE(result->body.find("topics"), std::string::npos);
}

TEST(Service, ServesClientsConcurrently) {
    Options options = RunningService::quick();
    options.delayMs = 1;
    options.piece = 3;
    RunningService service(options);
    constexpr int kClients = 12;
    // Each client stops reading until all have received a first piece, which requires that all are served
    // concurrently.
    std::atomic<int> started{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < kClients; ++i) {
        threads.emplace_back([&, i] {
            const ServiceClient client = service.client("user" + std::to_string(i));
            const std::string session = client.createSession();
            bool first = true;
            const ChatReply reply = client.chat(session, "怎么画圆", [&](const ChatReply&) {
                if (first) {
                    ++started;
                }
                first = false;
                const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
                while (started < kClients && std::chrono::steady_clock::now() < end) {
                    std::this_thread::yield();
                }
                return true;
            });
            EXPECT_TRUE(reply.complete);
            EXPECT_EQ(conversationOf(client.messages(session)),
                      (Conversation{{"user", "怎么画圆"}, {"assistant", reply.stream.answer()}}));
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(started, kClients);
}

TEST(Service, PiecesArriveBeforeTheAnswerIsComplete) {
    Options options = RunningService::quick();
    options.piece = 2;
    options.delayMs = 60000;
    RunningService service(options);
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    // The second piece is due a minute later, so the first one was not held back for it.
    const ChatReply reply = client.chat(session, "怎么画圆", [](const ChatReply&) { return false; });
    EXPECT_EQ(reply.stream.events(), std::vector<std::string>{"画圆"});
    // The disconnect is detected during the pause, and what was sent is stored.
    EXPECT_EQ(conversationOf(client.waitForMessages(session, 2)),
              (Conversation{{"user", "怎么画圆"}, {"assistant", "画圆"}}));
}

TEST(Service, AcceptedConnectionsHaveTcpNoDelaySet) {
    Options options = RunningService::quick();
    options.delayMs = 60000;
    RunningService service(options);
    const ServiceClient client = service.client();
    std::vector<bool> connections;
    client.chat(client.createSession(), "怎么画圆", [&](const ChatReply&) {
        connections = sendsAtOnce(service.port());
        return false;
    });
    EXPECT_EQ(connections, std::vector<bool>{true});
}

TEST(Service, StopCutsRunningStreams) {
    Options options = RunningService::quick();
    options.piece = 2;
    options.delayMs = 60000;
    RunningService service(options);
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    std::atomic<bool> streaming{false};
    ChatReply reply;
    std::thread reader([&] {
        reply = client.chat(session, "怎么画圆", [&](const ChatReply&) {
            streaming = true;
            return true;
        });
    });
    while (!streaming) {
        std::this_thread::yield();
    }
    service.service().stop();
    reader.join();
    EXPECT_FALSE(reply.complete);
    EXPECT_FALSE(service.service().isRunning());
}

TEST(Service, HistoryIsKeptAcrossARestart) {
    const TemporaryFolder folder;
    Options options = RunningService::quick();
    options.port = 0;
    options.database = folder.file("s.sqlite");
    std::string session;
    Json before;
    {
        Service service(options);
        service.start();
        const ServiceClient client(service.port());
        session = client.createSession();
        client.chat(session, "怎么画圆");
        before = client.messages(session);
        service.stop();
    }
    Service service(options);
    service.start();
    const ServiceClient client(service.port());
    EXPECT_EQ(client.messages(session), before);
    EXPECT_EQ(client.sessions().at(0).at("userChatSessionId"), session);
}

TEST(Service, BusyPortIsReported) {
    RunningService first;
    const TemporaryFolder folder;
    Options options = RunningService::quick();
    options.port = first.port();
    options.database = folder.file("s.sqlite");
    Service second(options);
    try {
        second.start();
        FAIL() << "a second service listens on the same port";
    } catch (const StartError& error) {
        EXPECT_NE(std::string(error.what()).find("cannot listen on 127.0.0.1:"), std::string::npos);
    }
}

TEST(Service, QuestionsKeepTheirTextExceptForLineEnds) {
    RunningService service;
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    const std::string question = "第一行\n\n  第二行 data: x\ty \"引号\" \\ 😀\n";
    client.chat(session, question);
    EXPECT_EQ(client.messages(session)[0].at("message"), question);
    client.chat(session, "a\r\nb\rc");
    EXPECT_EQ(client.messages(session)[2].at("message"), "a\nb\nc");
}

TEST(Service, OneConnectionServesManyRequests) {
    RunningService service;
    httplib::Client client("127.0.0.1", service.port());
    client.set_keep_alive(true);
    client.set_tcp_nodelay(true);
    int opened = 0;
    client.set_socket_options([&](socket_t) { ++opened; });
    for (int i = 0; i < 200; ++i) {
        const httplib::Result result =
            client.Post("/zr/ai/session/user", {{"Authorization", "anna"}}, "{}", "application/json");
        ASSERT_TRUE(result);
    }
    EXPECT_EQ(opened, 1);
}

TEST(Service, SeededUserHasAHistory) {
    Options options = RunningService::quick();
    options.seed = "demo";
    options.seedToken = "seeded";
    options.seedSessions = 25;
    RunningService service(options);
    const ServiceClient client = service.client("seeded");
    const Json sessions = client.sessions();
    ASSERT_EQ(sessions.size(), 25U);
    for (const Json& session : sessions) {
        EXPECT_GE(client.messages(session.at("userChatSessionId").get<std::string>()).size(), 2U);
    }
    EXPECT_EQ(service.client("anna").sessions(), Json::array());
}

}  // namespace
}  // namespace zentri::service
