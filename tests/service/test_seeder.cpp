#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "service/Clock.h"
#include "service/EmbeddedFiles.h"
#include "service/SearchTokens.h"
#include "service/Seeder.h"
#include "tests/service/TemporaryFolder.h"

namespace zentri::service {
namespace {

constexpr std::int64_t kDay = 24LL * 60 * 60 * 1000;
/// Wednesday 2024-03-13, 12:00 UTC.
constexpr std::int64_t kNow = 1'710'331'200'000;

const KnowledgeBase& builtIn() {
    static const KnowledgeBase knowledge(KnowledgeBase::builtInTopics());
    return knowledge;
}

std::vector<SeededSession> demo(const std::string& token = "demo", int count = 420, std::int64_t now = kNow) {
    return DemoHistory(builtIn(), parseConversations(embeddedFile("conversations.txt"), "conversations.txt"))
        .make(token, count, now);
}

TEST(DemoHistory, IsReproducible) {
    const auto first = demo("demo", 120);
    const auto second = demo("demo", 120);
    ASSERT_EQ(first.size(), 120U);
    ASSERT_EQ(second.size(), first.size());
    for (std::size_t i = 0; i < first.size(); ++i) {
        ASSERT_EQ(first[i].id, second[i].id);
        ASSERT_EQ(first[i].messages.size(), second[i].messages.size());
        ASSERT_EQ(first[i].messages.front().text, second[i].messages.front().text);
        ASSERT_EQ(first[i].messages.front().timeMs, second[i].messages.front().timeMs);
    }
    EXPECT_NE(demo("other", 1).front().id, first.front().id);
}

TEST(DemoHistory, CoversThePastTwoYearsWithoutFutureTimes) {
    std::int64_t oldest = kNow;
    int today = 0;
    int lastMonth = 0;
    for (const SeededSession& session : demo()) {
        ASSERT_FALSE(session.messages.empty());
        std::int64_t previous = 0;
        for (const Message& message : session.messages) {
            EXPECT_LE(message.timeMs, kNow);
            EXPECT_GE(message.timeMs, previous);
            previous = message.timeMs;
        }
        oldest = std::min(oldest, session.messages.front().timeMs);
        today += previous > kNow - kDay ? 1 : 0;
        lastMonth += previous > kNow - 30 * kDay ? 1 : 0;
    }
    EXPECT_LT(oldest, kNow - 600 * kDay);
    EXPECT_GT(oldest, kNow - 740 * kDay);
    EXPECT_GE(today, 3);
    EXPECT_GE(lastMonth, 20);
}

TEST(DemoHistory, HasFewSessionsAtNight) {
    int atNight = 0;
    for (const SeededSession& session : demo()) {
        const int hour = localTime(session.messages.front().timeMs).tm_hour;
        atNight += hour < 7 ? 1 : 0;
    }
    EXPECT_LE(atNight, 10);
}

TEST(DemoHistory, MixesLanguagesAndLengths) {
    int english = 0;
    int single = 0;
    std::size_t longest = 0;
    std::set<std::string> firstQuestions;
    for (const SeededSession& session : demo()) {
        english += isEnglish(session.messages.front().text) ? 1 : 0;
        single += session.messages.size() == 2 ? 1 : 0;
        longest = std::max(longest, session.messages.size());
        firstQuestions.insert(session.messages.front().text);
        for (std::size_t i = 0; i < session.messages.size(); ++i) {
            EXPECT_EQ(session.messages[i].role, i % 2 == 0 ? Role::User : Role::Assistant);
            EXPECT_FALSE(session.messages[i].text.empty());
        }
    }
    EXPECT_GE(english, 50);
    EXPECT_LE(english, 200);
    EXPECT_GE(single, 50);
    EXPECT_GE(longest, 14U);
    EXPECT_GE(firstQuestions.size(), 250U);
}

TEST(DemoHistory, GeneratesTheRequestedNumberOfSessions) {
    EXPECT_EQ(demo("t", 700).size(), 700U);
    EXPECT_TRUE(demo("t", 0).empty());
}

TEST(ScriptedConversations, EmbeddedFileIsWellFormed) {
    const auto conversations = parseConversations(embeddedFile("conversations.txt"), "conversations.txt");
    EXPECT_GE(conversations.size(), 40U);
    for (const ScriptedConversation& conversation : conversations) {
        ASSERT_GE(conversation.messages.size(), 2U);
        EXPECT_EQ(conversation.messages.size() % 2, 0U) << conversation.messages.front().text;
        EXPECT_EQ(isEnglish(conversation.messages.front().text), conversation.english);
    }
}

TEST(ScriptedConversations, ParsesMultiLineTurns) {
    const auto conversations = parseConversations("== en\nQ: a\nA: b\nc\n\n== zh\nQ: 问\n", "x");
    ASSERT_EQ(conversations.size(), 2U);
    EXPECT_TRUE(conversations[0].english);
    EXPECT_EQ(conversations[0].messages[1].text, "b\nc");
    EXPECT_EQ(conversations[1].messages[0].text, "问");
    EXPECT_THROW(parseConversations("text", "x"), SeedError);
    EXPECT_THROW(parseConversations("== zh\ntext", "x"), SeedError);
}

TEST(SeedFile, AcceptsSecondsMillisecondsAndMissingTimes) {
    const auto sessions = parseSeedFile(R"({"sessions":[
        {"title":"一","messages":[{"role":"user","message":"问","createTime":1700000000},
                                  {"role":"assistant","message":"答","createTime":1700000005000},
                                  {"role":"user","message":"再问"}]},
        {"messages":[{"role":"user","message":"x"}]}]})",
                                        "t", kNow);
    ASSERT_EQ(sessions.size(), 2U);
    EXPECT_EQ(sessions[0].title, "一");
    EXPECT_EQ(sessions[0].messages[0].timeMs, 1'700'000'000'000);
    EXPECT_EQ(sessions[0].messages[1].timeMs, 1'700'000'005'000);
    EXPECT_GT(sessions[0].messages[2].timeMs, 1'700'000'005'000);
    EXPECT_LE(sessions[1].messages[0].timeMs, kNow);
    EXPECT_NE(sessions[0].id, sessions[1].id);
}

TEST(SeedFile, RejectsMalformedFiles) {
    for (const char* text :
         {"", "{", "[]", "{}", R"({"sessions":{}})", R"({"sessions":[3]})", R"({"sessions":[{}]})",
          R"({"sessions":[{"messages":[]}]})", R"({"sessions":[{"messages":[3]}]})",
          R"({"sessions":[{"messages":[{"role":"system","message":"x"}]}]})",
          R"({"sessions":[{"messages":[{"role":"user"}]}]})",
          R"({"sessions":[{"title":1,"messages":[{"role":"user","message":"x"}]}]})",
          R"({"sessions":[{"messages":[{"role":"user","message":"x","createTime":"now"}]}]})"}) {
        EXPECT_THROW(parseSeedFile(text, "t", kNow), SeedError) << text;
    }
}

TEST(SeedHistory, SeedsAUserOncePerSeed) {
    Database database(":memory:");
    seedHistory(database, builtIn(), "demo", "anna", 30);
    seedHistory(database, builtIn(), "demo", "anna", 30);
    EXPECT_EQ(database.sessionsOf(database.userOfToken("anna")).size(), 30U);
    EXPECT_TRUE(database.sessionsOf(database.userOfToken("bert")).empty());
    seedHistory(database, builtIn(), "demo", "anna", 40);
    EXPECT_EQ(database.sessionsOf(database.userOfToken("anna")).size(), 40U);
}

TEST(SeedHistory, ImportsAFileOnceAndNamesItInErrors) {
    const TemporaryFolder folder;
    const std::string good =
        folder.write("good.json", R"({"sessions":[{"messages":[{"role":"user","message":"问"}]}]})");
    Database database(":memory:");
    seedHistory(database, builtIn(), good, "anna", 0);
    seedHistory(database, builtIn(), good, "anna", 0);
    EXPECT_EQ(database.sessionsOf(database.userOfToken("anna")).size(), 1U);
    const std::string bad = folder.write("bad.json", "{");
    for (const std::string& path : {bad, folder.file("missing.json"), folder.path()}) {
        try {
            seedHistory(database, builtIn(), path, "anna", 0);
            FAIL() << path;
        } catch (const SeedError& error) {
            EXPECT_NE(std::string(error.what()).find(path), std::string::npos);
        }
    }
}

}  // namespace
}  // namespace zentri::service
