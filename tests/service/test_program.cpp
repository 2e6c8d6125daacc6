#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>

#include "tests/service/ChildProgram.h"
#include "tests/service/RunningService.h"

namespace zentri::service {
namespace {

using Json = nlohmann::json;

/// Runs the program to completion and returns its error message, which must be one line, with exit code 2.
std::string complaintOf(const std::vector<std::string>& arguments) {
    ChildProgram program(arguments);
    const std::string errors = program.readErrors();
    EXPECT_EQ(program.wait(), 2) << errors;
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
    EXPECT_EQ(errors.rfind("zentri-service: ", 0), 0U) << errors;
    return errors;
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(Program, PrintsThePortItListensOn) {
    const TemporaryFolder folder;
    ChildProgram program({"--listen", "127.0.0.1:0", "--database", folder.file("s.sqlite")});
    const int port = program.waitForPort();
    ASSERT_GT(port, 0);
    EXPECT_EQ(ServiceClient(port).sessions(), Json::array());
    program.send(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.readErrors(), "");
}

TEST(Program, StopsCleanlyOnSigint) {
    const TemporaryFolder folder;
    ChildProgram program({"--listen", "127.0.0.1:0", "--database", folder.file("s.sqlite")});
    ASSERT_GT(program.waitForPort(), 0);
    program.send(SIGINT);
    EXPECT_EQ(program.wait(), 0);
}

TEST(Program, SigtermDuringAStreamKeepsWhatWasSent) {
    const TemporaryFolder folder;
    const std::vector<std::string> arguments{"--listen", "127.0.0.1:0", "--database", folder.file("s.sqlite"),
                                             "--delay",  "60000",       "--piece",    "2"};
    std::string session;
    {
        ChildProgram program(arguments);
        const ServiceClient client(program.waitForPort());
        session = client.createSession();
        bool sent = false;
        const ChatReply reply = client.chat(session, "怎么画圆", [&](const ChatReply&) {
            if (!sent) {
                program.send(SIGTERM);
            }
            sent = true;
            return true;
        });
        EXPECT_FALSE(reply.complete);
        EXPECT_EQ(reply.stream.answer(), "画圆");
        EXPECT_EQ(program.wait(), 0);
    }
    ChildProgram again(arguments);
    const Json messages = ServiceClient(again.waitForPort()).messages(session);
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[1].at("message"), "画圆");
}

TEST(Program, SigkillLosesNoCompletedAnswer) {
    const TemporaryFolder folder;
    const std::vector<std::string> arguments{
        "--listen", "127.0.0.1:0", "--database", folder.file("s.sqlite"), "--delay", "0"};
    std::string session;
    Json before;
    {
        ChildProgram program(arguments);
        const ServiceClient client(program.waitForPort());
        session = client.createSession();
        client.chat(session, "怎么画圆");
        before = client.messages(session);
        program.send(SIGKILL);
        EXPECT_EQ(program.wait(), -1);
    }
    ChildProgram again(arguments);
    EXPECT_EQ(ServiceClient(again.waitForPort()).messages(session), before);
}

TEST(Program, ReportsABadOptionInOneLine) {
    EXPECT_TRUE(contains(complaintOf({"--nonsense"}), "--nonsense"));
    EXPECT_TRUE(contains(complaintOf({"--listen", "here"}), "--listen"));
    EXPECT_TRUE(contains(complaintOf({"--fault", "chat:nonsense"}), "nonsense"));
    EXPECT_TRUE(contains(complaintOf({"--upstream", "nonsense"}), "nonsense"));
}

TEST(Program, ReportsABusyPortInOneLine) {
    RunningService other;
    const TemporaryFolder folder;
    const std::string address = "127.0.0.1:" + std::to_string(other.port());
    const std::string complaint = complaintOf({"--listen", address, "--database", folder.file("s.sqlite")});
    EXPECT_TRUE(contains(complaint, "cannot listen on " + address)) << complaint;
}

TEST(Program, ReportsAnUnavailableAddressInOneLine) {
    const TemporaryFolder folder;
    EXPECT_TRUE(contains(complaintOf({"--listen", "203.0.113.1:0", "--database", folder.file("s.sqlite")}),
                         "cannot listen on 203.0.113.1:0"));
}

TEST(Program, ReportsAnUnusableDatabaseInOneLine) {
    const TemporaryFolder folder;
    const std::string broken = folder.write("s.sqlite", std::string(5000, 'x'));
    EXPECT_TRUE(contains(complaintOf({"--listen", "127.0.0.1:0", "--database", broken}), broken));
    const std::string nowhere = folder.path() + "/none/s.sqlite";
    EXPECT_TRUE(contains(complaintOf({"--listen", "127.0.0.1:0", "--database", nowhere}), nowhere));
    EXPECT_TRUE(
        contains(complaintOf({"--listen", "127.0.0.1:0", "--database", folder.path()}), folder.path()));
}

TEST(Program, ReportsABadSeedFileInOneLine) {
    const TemporaryFolder folder;
    const std::string bad = folder.write("seed.json", "{");
    const std::vector<std::string> common{"--listen", "127.0.0.1:0", "--database", folder.file("s.sqlite"),
                                          "--seed"};
    std::vector<std::string> arguments = common;
    arguments.push_back(bad);
    EXPECT_TRUE(contains(complaintOf(arguments), "bad seed file '" + bad + "'"));
    arguments.back() = folder.file("missing.json");
    EXPECT_TRUE(contains(complaintOf(arguments), "missing.json"));
}

TEST(Program, ReportsABadKnowledgeDirectoryInOneLine) {
    const TemporaryFolder folder;
    folder.write("x.topics", "nonsense");
    EXPECT_TRUE(
        contains(complaintOf({"--knowledge", folder.path(), "--database", ":memory:"}), "x.topics:1"));
    EXPECT_TRUE(
        contains(complaintOf({"--knowledge", folder.file("none"), "--database", ":memory:"}), "none"));
}

TEST(Program, HelpAndVersionPrintAndExit) {
    ChildProgram help({"--help"});
    EXPECT_TRUE(contains(help.readOutput(), "--allow-faults"));
    EXPECT_EQ(help.wait(), 0);
    ChildProgram version({"--version"});
    EXPECT_TRUE(contains(version.readOutput(), "zentri-service"));
    EXPECT_EQ(version.wait(), 0);
}

TEST(Program, AskPrintsTheAnswerAndExits) {
    ChildProgram program({"--ask", "怎么画圆"});
    EXPECT_TRUE(contains(program.readOutput(), "【CIRCLE】"));
    EXPECT_EQ(program.wait(), 0);
}

TEST(Program, AskAnswersAnEmptyQuestionInsteadOfListening) {
    ChildProgram program({"--ask", ""});
    EXPECT_TRUE(contains(program.readOutput(), "没有找到"));
    EXPECT_EQ(program.wait(), 0);
}

TEST(Program, VerboseLogsRequestsWithoutTokens) {
    const TemporaryFolder folder;
    ChildProgram program(
        {"--listen", "127.0.0.1:0", "--database", folder.file("s.sqlite"), "--delay", "0", "--verbose"});
    const ServiceClient client(program.waitForPort(), "a-secret-token");
    client.chat(client.createSession(), "怎么画圆");
    program.send(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    const std::string errors = program.readErrors();
    EXPECT_TRUE(contains(errors, "POST /zr/ai/caddraw/chat: answered")) << errors;
    EXPECT_FALSE(contains(errors, "secret"));
}

}  // namespace
}  // namespace zentri::service
