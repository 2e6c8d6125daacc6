#include <gtest/gtest.h>

#include "service/Text.h"
#include "tests/service/RunningService.h"

namespace zentri::service {
namespace {

using Json = nlohmann::json;

Options withFaults(std::initializer_list<const char*> faults) {
    Options options = RunningService::quick();
    for (const char* fault : faults) {
        options.faults.push_back(parseFault(fault));
    }
    return options;
}

/// The unparsed body of a session call's reply; empty when there is no reply.
std::string rawCall(const RunningService& service, const std::string& path, int* status = nullptr) {
    httplib::Client client("127.0.0.1", service.port());
    const httplib::Result result = client.Post(path, {{"Authorization", "anna"}}, "{}", "application/json");
    if (status != nullptr) {
        *status = result ? result->status : 0;
    }
    return result ? result->body : std::string();
}

TEST(ServiceFaults, StatusFaultAppliesToEveryCall) {
    RunningService service(withFaults({"any:status=503,times=4"}));
    const ServiceClient client = service.client();
    for (const char* path : {"/zr/ai/session/create", "/zr/ai/session/user", "/zr/ai/chat/user/session/x"}) {
        int status = 0;
        EXPECT_EQ(Json::parse(rawCall(service, path, &status)).at("code"), 503);
        EXPECT_EQ(status, 503);
    }
    EXPECT_EQ(client.chat("x", "q").status, 503);
    EXPECT_EQ(client.sessions(), Json::array());
}

TEST(ServiceFaults, EnvelopeFaultsChangeTheReply) {
    RunningService service(withFaults({"list:code=500,times=1", "list:msg=broken", "list:data={\"a\":1}",
                                       "create:data=null", "read:broken-json"}));
    const ServiceClient client = service.client();
    EXPECT_EQ(client.call("/zr/ai/session/user"),
              (Json{{"code", 500}, {"msg", "broken"}, {"data", {{"a", 1}}}}));
    EXPECT_TRUE(client.call("/zr/ai/session/create").at("data").is_null());
    EXPECT_FALSE(Json::accept(rawCall(service, "/zr/ai/chat/user/session/x")));
    EXPECT_EQ(client.sessions().size(), 1U);
}

TEST(ServiceFaults, CutStreamIsIncompleteAndItsPartIsStored) {
    for (const char* fault : {"chat:cut-after=2", "chat:cut-in-event=2", "chat:cut-in-char=2"}) {
        RunningService service(withFaults({fault}));
        const ServiceClient client = service.client();
        const std::string session = client.createSession();
        const ChatReply reply = client.chat(session, "怎么画圆");
        EXPECT_FALSE(reply.complete) << fault;
        EXPECT_EQ(reply.stream.events().size(), 2U) << fault;
        EXPECT_EQ(client.waitForMessages(session, 2)[1].at("message"), reply.stream.answer()) << fault;
        EXPECT_TRUE(client.chat(session, "怎么画圆").complete) << fault;
    }
}

TEST(ServiceFaults, CutInCharLeavesAnIncompleteCharacter) {
    RunningService service(withFaults({"chat:cut-in-char=1"}));
    const ServiceClient client = service.client();
    const ChatReply reply = client.chat(client.createSession(), "怎么画圆");
    EXPECT_FALSE(isValidUtf8(reply.stream.unfinished()));
}

TEST(ServiceFaults, EndInEventEndsTheReplyProperly) {
    RunningService service(withFaults({"chat:end-in-event=1"}));
    const ServiceClient client = service.client();
    const ChatReply reply = client.chat(client.createSession(), "怎么画圆");
    EXPECT_TRUE(reply.complete);
    EXPECT_EQ(reply.stream.events().size(), 1U);
    EXPECT_NE(reply.stream.unfinished(), "");
}

TEST(ServiceFaults, SendsCrLfEmptyHugeAndInvalidEvents) {
    RunningService service(withFaults({"chat:crlf", "chat:empty-events=2,skip=1",
                                       "chat:huge-event=300000,skip=2", "chat:invalid-utf8,skip=3"}));
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    const ChatReply crlf = client.chat(session, "怎么画圆");
    EXPECT_TRUE(crlf.stream.events().empty());
    EXPECT_NE(crlf.bytes.find("\r\n\r\n"), std::string::npos);
    const ChatReply empty = client.chat(session, "怎么画圆");
    EXPECT_EQ(empty.stream.events()[0], "");
    EXPECT_EQ(empty.stream.events()[1], "");
    const ChatReply huge = client.chat(session, "怎么画圆");
    EXPECT_EQ(huge.stream.events().size(), 1U);
    EXPECT_GE(huge.stream.answer().size(), 300000U);
    const ChatReply invalid = client.chat(session, "怎么画圆");
    EXPECT_TRUE(invalid.complete);
    EXPECT_FALSE(isValidUtf8(invalid.stream.events()[0]));
}

TEST(ServiceFaults, NeverEndingStreamEndsWhenTheClientDisconnects) {
    RunningService service(withFaults({"chat:never-ending"}));
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    const ChatReply reply =
        client.chat(session, "怎么画圆", [](const ChatReply& so) { return so.stream.events().size() < 60; });
    EXPECT_FALSE(reply.complete);
    EXPECT_GE(reply.stream.events().size(), 60U);
    // The answer is stored once, however often it was repeated.
    const std::string stored = client.waitForMessages(session, 2)[1].at("message").get<std::string>();
    EXPECT_EQ(reply.stream.answer().compare(0, stored.size() * 2, stored + stored, 0, stored.size() * 2), 0);
}

TEST(ServiceFaults, SlowHeadersDoNotDelayAStop) {
    RunningService service(withFaults({"list:slow-headers=1", "list:slow-headers=3600000,skip=1"}));
    EXPECT_EQ(service.client().sessions(), Json::array());
    std::thread caller([&] { rawCall(service, "/zr/ai/session/user"); });
    // Whether or not the call has begun to wait, stop() must not take an hour.
    service.service().stop();
    caller.join();
}

TEST(ServiceFaults, AreAcceptedAtRunTimeOnlyWhenAllowed) {
    RunningService closed;
    httplib::Client refused("127.0.0.1", closed.port());
    EXPECT_EQ(refused.Post("/test/faults", R"({"kind":"crlf"})", "application/json")->status, 404);

    Options options = RunningService::quick();
    options.allowFaults = true;
    RunningService service(options);
    httplib::Client client("127.0.0.1", service.port());
    EXPECT_EQ(client
                  .Post("/test/faults",
                        R"([{"call":"list","kind":"code","value":7},{"kind":"status","value":500}])",
                        "application/json")
                  ->status,
              200);
    EXPECT_EQ(Json::parse(client.Get("/test/faults")->body).at("data").size(), 2U);
    EXPECT_EQ(client.Post("/test/faults", R"({"kind":"nonsense"})", "application/json")->status, 400);
    EXPECT_EQ(client.Post("/test/faults", "{", "application/json")->status, 400);
    EXPECT_EQ(client.Delete("/test/faults")->status, 200);
    EXPECT_EQ(Json::parse(client.Get("/test/faults")->body).at("data"), Json::array());
    EXPECT_EQ(service.client().sessions(), Json::array());
}

}  // namespace
}  // namespace zentri::service
