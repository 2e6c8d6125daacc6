#include <gtest/gtest.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <cstdio>

#include "tests/service/FakeUpstream.h"
#include "tests/service/RunningService.h"

namespace zentri::service {
namespace {

using Json = nlohmann::json;

Options forwardingTo(const std::string& url) {
    Options options = RunningService::quick();
    options.upstreamUrl = url;
    options.upstreamModel = "some-model";
    options.upstreamTimeoutSeconds = 20;
    return options;
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// The answer to one question, from a service that forwards to the fake server.
std::string answerThrough(const FakeUpstream& upstream, ChatReply* whole = nullptr) {
    RunningService service(forwardingTo(upstream.url()));
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    const ChatReply reply = client.chat(session, "怎么画圆");
    EXPECT_TRUE(reply.complete);
    EXPECT_EQ(client.messages(session)[1].at("message"), reply.stream.answer());
    if (whole != nullptr) {
        *whole = reply;
    }
    return reply.stream.answer();
}

TEST(Upstream, ForwardsTheDeltas) {
    FakeUpstream upstream;
    upstream.script = [](const auto& send) {
        for (const char* text : {"用", "【CIRCLE】", "\n\n1. data: ", "完"}) {
            send(FakeUpstream::delta(text));
        }
        return send(FakeUpstream::done());
    };
    EXPECT_EQ(answerThrough(upstream), "用【CIRCLE】\n\n1. data: 完");
}

TEST(Upstream, ForwardsEachDeltaBeforeTheNextArrives) {
    Gate seen;
    FakeUpstream upstream;
    bool opened = false;
    upstream.script = [&](const auto& send) {
        send(FakeUpstream::delta("一"));
        opened = seen.wait();
        send(FakeUpstream::delta("二"));
        return send(FakeUpstream::done());
    };
    RunningService service(forwardingTo(upstream.url()));
    const ServiceClient client = service.client();
    const ChatReply reply = client.chat(client.createSession(), "q", [&](const ChatReply& so) {
        if (so.stream.answer() == "一") {
            seen.open();
        }
        return true;
    });
    EXPECT_TRUE(opened);
    EXPECT_EQ(reply.stream.answer(), "一二");
}

TEST(Upstream, SendsTheConversationTheModelAndTheKey) {
    FakeUpstream upstream;
    upstream.script = [](const auto& send) {
        send(FakeUpstream::delta("答"));
        return send(FakeUpstream::done());
    };
    Options options = forwardingTo(upstream.url());
    options.upstreamKey = "the-key";
    RunningService service(options);
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    client.chat(session, "第一问");
    client.chat(session, "第二问");
    const auto requests = upstream.requests();
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_EQ(requests[1].get_header_value("Authorization"), "Bearer the-key");
    EXPECT_EQ(requests[1].get_header_value("Content-Type"), "application/json");
    const Json body = Json::parse(requests[1].body);
    EXPECT_EQ(body.at("model"), "some-model");
    EXPECT_EQ(body.at("stream"), true);
    const Json messages = body.at("messages");
    ASSERT_EQ(messages.size(), 4U);
    EXPECT_EQ(messages[0].at("role"), "system");
    EXPECT_TRUE(contains(messages[0].at("content").get<std::string>(), "【CIRCLE】"));
    EXPECT_EQ(messages[1], (Json{{"role", "user"}, {"content", "第一问"}}));
    EXPECT_EQ(messages[2], (Json{{"role", "assistant"}, {"content", "答"}}));
    EXPECT_EQ(messages[3], (Json{{"role", "user"}, {"content", "第二问"}}));
}

TEST(Upstream, WithoutKeyAndModelSendsNoKeyAndTheClientsModel) {
    FakeUpstream upstream;
    upstream.script = [](const auto& send) { return send(FakeUpstream::done()); };
    Options options = forwardingTo(upstream.url());
    options.upstreamModel.clear();
    RunningService service(options);
    const ServiceClient client = service.client();
    client.chat(client.createSession(), "q");
    ASSERT_EQ(upstream.requests().size(), 1U);
    EXPECT_FALSE(upstream.requests()[0].has_header("Authorization"));
    EXPECT_EQ(Json::parse(upstream.requests()[0].body).at("model"), "deepseek-chat");
}

TEST(Upstream, ParsesAStreamSplitAtEveryByte) {
    const std::string bytes = ": hello\r\n\r\n" + FakeUpstream::delta("你好") +
                              "event: x\ndata: {\"choices\":[]}\n\n" + FakeUpstream::delta("世界") +
                              FakeUpstream::done();
    FakeUpstream upstream;
    upstream.script = [&](const auto& send) {
        for (const char c : bytes) {
            if (!send(std::string(1, c))) {
                return false;
            }
        }
        return true;
    };
    EXPECT_EQ(answerThrough(upstream), "你好世界");
}

TEST(Upstream, FinishReasonEndsTheAnswerWithoutDone) {
    FakeUpstream upstream;
    upstream.script = [](const auto& send) {
        send(FakeUpstream::delta("完"));
        return send("data: {\"choices\":[{\"delta\":{},\"finish_reason\":\"stop\"}]}\n\n");
    };
    EXPECT_EQ(answerThrough(upstream), "完");
}

TEST(Upstream, AcceptsACompleteReplyWhenTheServerDoesNotStream) {
    FakeUpstream upstream;
    upstream.type = "application/json";
    upstream.body =
        R"({"choices":[{"message":{"role":"assistant","content":"整段回答"},"finish_reason":"stop"}]})";
    EXPECT_EQ(answerThrough(upstream), "整段回答");
}

TEST(Upstream, ErrorStatusIsExplainedInTheAnswer) {
    struct Case {
        int status;
        const char* words;
    };
    for (const Case& c :
         {Case{401, "ZENTRI_UPSTREAM_KEY"}, Case{403, "密钥"}, Case{404, "--upstream-model"},
          Case{429, "额度"}, Case{500, "内部出错"}, Case{400, "拒绝了请求"}, Case{302, "--upstream"}}) {
        FakeUpstream upstream;
        upstream.status = c.status;
        upstream.body = R"({"error":{"message":"the reason"}})";
        const std::string answer = answerThrough(upstream);
        EXPECT_TRUE(contains(answer, "HTTP " + std::to_string(c.status))) << answer;
        EXPECT_TRUE(contains(answer, c.words)) << answer;
        EXPECT_TRUE(contains(answer, "the reason")) << answer;
    }
}

TEST(Upstream, RefusedConnectionIsReportedInTheAnswer) {
    std::string url;
    {
        const FakeUpstream gone;
        url = gone.url();
    }
    RunningService service(forwardingTo(url));
    const ServiceClient client = service.client();
    EXPECT_TRUE(contains(client.chat(client.createSession(), "q").stream.answer(), "连接不上"));
}

TEST(Upstream, TimeoutIsReportedInTheAnswer) {
    Gate end;
    FakeUpstream upstream;
    upstream.script = [&](const auto&) { return end.wait(); };
    Options options = forwardingTo(upstream.url());
    options.upstreamTimeoutSeconds = 1;
    RunningService service(options);
    const ServiceClient client = service.client();
    const std::string answer = client.chat(client.createSession(), "q").stream.answer();
    end.open();
    EXPECT_TRUE(contains(answer, "没有给出回答") || contains(answer, "没有回应")) << answer;
}

TEST(Upstream, TruncatedStreamKeepsThePartAndReportsIt) {
    FakeUpstream upstream;
    upstream.script = [](const auto& send) {
        send(FakeUpstream::delta("前一半"));
        return false;
    };
    const std::string answer = answerThrough(upstream);
    EXPECT_EQ(answer.rfind("前一半", 0), 0U);
    EXPECT_TRUE(contains(answer, "中途断开")) << answer;
}

TEST(Upstream, StreamWithoutDoneOrFinishReasonIsIncomplete) {
    FakeUpstream upstream;
    upstream.script = [](const auto& send) { return send(FakeUpstream::delta("前一半")); };
    EXPECT_TRUE(contains(answerThrough(upstream), "不完整"));
}

TEST(Upstream, InvalidJsonIsReportedInTheAnswer) {
    FakeUpstream upstream;
    upstream.script = [](const auto& send) {
        send(FakeUpstream::delta("好"));
        send("data: {broken\n\n");
        return send(FakeUpstream::delta("不再看"));
    };
    const std::string answer = answerThrough(upstream);
    EXPECT_EQ(answer.rfind("好", 0), 0U);
    EXPECT_TRUE(contains(answer, "看不懂")) << answer;
    EXPECT_FALSE(contains(answer, "不再看"));
}

TEST(Upstream, ErrorEventIsReportedInTheAnswer) {
    FakeUpstream upstream;
    upstream.script = [](const auto& send) {
        return send("data: {\"error\":{\"message\":\"overloaded\"}}\n\n");
    };
    EXPECT_TRUE(contains(answerThrough(upstream), "overloaded"));
}

TEST(Upstream, BinaryErrorPageIsReportedSafely) {
    FakeUpstream upstream;
    upstream.status = 500;
    upstream.body = "<html>\xFF\xFE" + std::string(100000, 'x');
    EXPECT_TRUE(contains(answerThrough(upstream), "HTTP 500"));
}

TEST(Upstream, EmptyAnswerIsReported) {
    FakeUpstream upstream;
    upstream.type = "application/json";
    upstream.body = R"({"choices":[{"message":{"content":""}}]})";
    EXPECT_TRUE(contains(answerThrough(upstream), "没有给出回答"));
}

TEST(Upstream, ClientDisconnectCancelsTheRequestToASilentServer) {
    Gate ended;
    FakeUpstream upstream;
    upstream.script = [&](const auto& send) {
        send(FakeUpstream::delta("一"));
        // Send no more text, but poll whether the connection is still open.
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (send("") && std::chrono::steady_clock::now() < end) {
            std::this_thread::yield();
        }
        ended.open();
        return false;
    };
    RunningService service(forwardingTo(upstream.url()));
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    client.chat(session, "q", [](const ChatReply&) { return false; });
    EXPECT_TRUE(ended.wait());
    EXPECT_EQ(client.waitForMessages(session, 2)[1].at("message"), "一");
}

TEST(Upstream, StopCancelsTheRequestToASilentServer) {
    Gate end;
    Gate asked;
    FakeUpstream upstream;
    upstream.script = [&](const auto&) {
        asked.open();
        end.wait();
        return false;
    };
    Options options = forwardingTo(upstream.url());
    options.upstreamTimeoutSeconds = 3600;
    RunningService service(options);
    const ServiceClient client = service.client();
    const std::string session = client.createSession();
    std::thread asking([&] { EXPECT_FALSE(client.chat(session, "q").complete); });
    EXPECT_TRUE(asked.wait());
    service.service().stop();
    asking.join();
    end.open();
}

/// A key and a self-signed certificate for 127.0.0.1, generated for this run.
struct Certificate {
    explicit Certificate(const TemporaryFolder& folder)
        : keyFile(folder.file("key.pem")), certificateFile(folder.file("certificate.pem")) {
        EVP_PKEY* key = EVP_RSA_gen(2048);
        X509* certificate = X509_new();
        X509_set_version(certificate, 2);
        ASN1_INTEGER_set(X509_get_serialNumber(certificate), 1);
        X509_gmtime_adj(X509_getm_notBefore(certificate), -3600);
        X509_gmtime_adj(X509_getm_notAfter(certificate), 3600);
        X509_set_pubkey(certificate, key);
        X509_NAME* name = X509_get_subject_name(certificate);
        X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                                   reinterpret_cast<const unsigned char*>("127.0.0.1"), -1, -1, 0);
        X509_set_issuer_name(certificate, name);
        for (const auto& [id, value] : {std::pair{NID_subject_alt_name, "IP:127.0.0.1"},
                                        std::pair{NID_basic_constraints, "critical,CA:TRUE"}}) {
            X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, nullptr, id, value);
            X509_add_ext(certificate, extension, -1);
            X509_EXTENSION_free(extension);
        }
        X509_sign(certificate, key, EVP_sha256());
        std::FILE* file = std::fopen(keyFile.c_str(), "wb");
        PEM_write_PrivateKey(file, key, nullptr, nullptr, 0, nullptr, nullptr);
        std::fclose(file);
        file = std::fopen(certificateFile.c_str(), "wb");
        PEM_write_X509(file, certificate);
        std::fclose(file);
        X509_free(certificate);
        EVP_PKEY_free(key);
    }

    std::string keyFile;
    std::string certificateFile;
};

TEST(Upstream, HttpsRequiresATrustedCertificate) {
    const TemporaryFolder folder;
    const Certificate certificate(folder);
    FakeUpstream upstream(std::make_unique<httplib::SSLServer>(certificate.certificateFile.c_str(),
                                                               certificate.keyFile.c_str()));
    upstream.script = [](const auto& send) {
        send(FakeUpstream::delta("加密的回答"));
        return send(FakeUpstream::done());
    };
    {
        Options options = forwardingTo(upstream.url("https"));
        options.upstreamCaFile = certificate.certificateFile;
        RunningService service(options);
        const ServiceClient client = service.client();
        EXPECT_EQ(client.chat(client.createSession(), "q").stream.answer(), "加密的回答");
    }
    RunningService service(forwardingTo(upstream.url("https")));
    const ServiceClient client = service.client();
    EXPECT_TRUE(contains(client.chat(client.createSession(), "q").stream.answer(), "证书"));
    EXPECT_EQ(upstream.requests().size(), 1U);
}

}  // namespace
}  // namespace zentri::service
