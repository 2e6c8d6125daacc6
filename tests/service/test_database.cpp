#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <set>
#include <thread>

#include "service/Database.h"
#include "service/Sqlite.h"
#include "tests/service/TemporaryFolder.h"

namespace zentri::service {
namespace {

TEST(Database, CreatesAUserForEachNewToken) {
    Database database(":memory:");
    const std::int64_t anna = database.userOfToken("anna");
    EXPECT_NE(anna, database.userOfToken("bert"));
    EXPECT_EQ(anna, database.userOfToken("anna"));
    EXPECT_NE(anna, database.userOfToken("Anna"));
    EXPECT_EQ(database.userCount(), 3);
}

TEST(Database, IsolatesTheSessionsOfDifferentUsers) {
    Database database(":memory:");
    const std::int64_t anna = database.userOfToken("anna");
    const std::int64_t bert = database.userOfToken("bert");
    const std::string session = database.createSession(anna, 1000);
    EXPECT_TRUE(database.ownsSession(anna, session));
    EXPECT_FALSE(database.ownsSession(bert, session));
    EXPECT_FALSE(database.ownsSession(anna, "no such session"));
    EXPECT_TRUE(database.messagesOf(anna, session).has_value());
    EXPECT_FALSE(database.messagesOf(bert, session).has_value());
    EXPECT_EQ(database.sessionsOf(anna).size(), 1U);
    EXPECT_TRUE(database.sessionsOf(bert).empty());
}

TEST(Database, KeepsMessagesInOrderAndDerivesTheTitleFromTheFirstQuestion) {
    Database database(":memory:");
    const std::int64_t user = database.userOfToken("anna");
    const std::string session = database.createSession(user, 1000);
    EXPECT_EQ(database.sessionsOf(user).front().title, "新对话");
    database.addMessage(session, {Role::User, "怎么画圆？\n第二行", 2000});
    database.addMessage(session, {Role::Assistant, "用【CIRCLE】\n\n1. …", 3000});
    database.addMessage(session, {Role::User, "那怎么删除？", 4000});
    const std::vector<Message> messages = *database.messagesOf(user, session);
    ASSERT_EQ(messages.size(), 3U);
    EXPECT_EQ(messages[0].role, Role::User);
    EXPECT_EQ(messages[1].role, Role::Assistant);
    EXPECT_EQ(messages[1].text, "用【CIRCLE】\n\n1. …");
    EXPECT_EQ(messages[2].timeMs, 4000);
    const Session listed = database.sessionsOf(user).front();
    EXPECT_EQ(listed.title, "怎么画圆？ 第二行");
    EXPECT_EQ(listed.createTimeMs, 1000);
    EXPECT_EQ(listed.useTimeMs, 4000);
}

TEST(Database, ListsTheMostRecentlyUsedSessionFirst) {
    Database database(":memory:");
    const std::int64_t user = database.userOfToken("anna");
    const std::string first = database.createSession(user, 1000);
    const std::string second = database.createSession(user, 2000);
    EXPECT_EQ(database.sessionsOf(user).front().id, second);
    database.addMessage(first, {Role::User, "x", 3000});
    EXPECT_EQ(database.sessionsOf(user).front().id, first);
}

TEST(Database, TruncatesLongTitlesAtACharacterBoundary) {
    std::string question;
    for (int i = 0; i < 40; ++i) {
        question += "圆";
    }
    const std::string title = titleOfQuestion(question);
    EXPECT_EQ(title, question.substr(0, std::string("圆").size() * 30) + "…");
    EXPECT_EQ(titleOfQuestion(" a\nb "), "a b");
    EXPECT_EQ(titleOfQuestion(" \n "), "新对话");
}

TEST(Database, StoresTextsWithNulBytesQuotesAndEmoji) {
    Database database(":memory:");
    const std::int64_t user = database.userOfToken("anna");
    const std::string session = database.createSession(user, 1000);
    const std::string text = std::string("a\0b'\";--", 8) + "😀";
    database.addMessage(session, {Role::User, text, 1});
    EXPECT_EQ(database.messagesOf(user, session)->front().text, text);
}

TEST(Database, KeepsItsDataWhenReopened) {
    const TemporaryFolder folder;
    std::string session;
    {
        Database database(folder.file("s.sqlite"));
        session = database.createSession(database.userOfToken("anna"), 1000);
        database.addMessage(session, {Role::User, "怎么画圆", 2000});
    }
    Database database(folder.file("s.sqlite"));
    const std::int64_t user = database.userOfToken("anna");
    EXPECT_EQ(database.messagesOf(user, session)->front().text, "怎么画圆");
    EXPECT_EQ(database.sessionsOf(user).front().title, "怎么画圆");
}

TEST(Database, UsesWalModeAndStoresNoTokens) {
    const TemporaryFolder folder;
    Database database(folder.file("s.sqlite"));
    database.userOfToken("a-very-secret-token");
    SqliteDatabase other(folder.file("s.sqlite"));
    SqliteStatement mode = other.prepare("PRAGMA journal_mode");
    SqliteStatement::Run modeRun(mode);
    ASSERT_TRUE(modeRun.step());
    EXPECT_EQ(modeRun.text(0), "wal");
    SqliteStatement digest = other.prepare("SELECT token_digest FROM users");
    SqliteStatement::Run digestRun(digest);
    ASSERT_TRUE(digestRun.step());
    EXPECT_EQ(digestRun.text(0), sha256Hex("a-very-secret-token"));
    EXPECT_EQ(sha256Hex("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(Database, TwoConnectionsCanShareOneFile) {
    const TemporaryFolder folder;
    Database first(folder.file("s.sqlite"));
    Database second(folder.file("s.sqlite"));
    const auto write = [](Database& database, const char* token) {
        const std::int64_t user = database.userOfToken(token);
        for (int i = 0; i < 50; ++i) {
            database.addMessage(database.createSession(user, i), {Role::User, "x", i});
        }
    };
    std::thread other([&] { write(first, "anna"); });
    write(second, "bert");
    other.join();
    EXPECT_EQ(first.sessionsOf(first.userOfToken("bert")).size(), 50U);
    EXPECT_EQ(second.sessionsOf(second.userOfToken("anna")).size(), 50U);
}

TEST(Database, CanBeUsedFromManyThreads) {
    Database database(":memory:");
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&database, t] {
            const std::int64_t user = database.userOfToken("user" + std::to_string(t));
            for (int i = 0; i < 20; ++i) {
                const std::string session = database.createSession(user, i);
                database.addMessage(session, {Role::User, "q", i});
                EXPECT_EQ(database.messagesOf(user, session)->size(), 1U);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(database.sessionCount(), 160);
}

TEST(Database, SeedsOncePerKey) {
    Database database(":memory:");
    const std::int64_t user = database.userOfToken("anna");
    const std::vector<SeededSession> sessions{
        {"id-1", "", {{Role::User, "问", 5000}, {Role::Assistant, "答", 6000}}},
        {"id-2", "标题", {{Role::User, "q", 1}}}};
    EXPECT_TRUE(database.seed(user, "k", sessions));
    EXPECT_FALSE(database.seed(user, "k", sessions));
    EXPECT_TRUE(database.seed(user, "k2", sessions));
    const std::vector<Session> listed = database.sessionsOf(user);
    ASSERT_EQ(listed.size(), 2U);
    EXPECT_EQ(listed[0].title, "问");
    EXPECT_EQ(listed[0].createTimeMs, 5000);
    EXPECT_EQ(listed[0].useTimeMs, 6000);
    EXPECT_EQ(listed[1].title, "标题");
    EXPECT_EQ(database.messagesOf(user, "id-1")->size(), 2U);
}

std::string openError(const std::string& path) {
    try {
        Database database(path);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

TEST(Database, ReportsWhyAFileCannotBeOpened) {
    const TemporaryFolder folder;
    const std::string text = folder.write("text.sqlite", std::string(4096, 'x'));
    EXPECT_EQ(openError(text), "cannot use the database '" + text + "': file is not a database");
    EXPECT_NE(openError(folder.path()).find("unable to open"), std::string::npos);
    EXPECT_NE(openError(folder.path() + "/none/s.sqlite").find("unable to open"), std::string::npos);
}

TEST(Database, RejectsAnotherProgramsFileAndANewerSchema) {
    const TemporaryFolder folder;
    SqliteDatabase(folder.file("other.sqlite")).execute("CREATE TABLE sessions(x)");
    EXPECT_NE(openError(folder.file("other.sqlite")).find("another program"), std::string::npos);
    SqliteDatabase(folder.file("newer.sqlite")).execute("PRAGMA user_version = 99");
    EXPECT_NE(openError(folder.file("newer.sqlite")).find("newer version of this program (schema 99)"),
              std::string::npos);
}

TEST(Database, SessionIdsDoNotRepeat) {
    std::set<std::string> ids;
    for (int i = 0; i < 1000; ++i) {
        ids.insert(newSessionId());
    }
    EXPECT_EQ(ids.size(), 1000U);
    EXPECT_EQ(ids.begin()->size(), 36U);
}

}  // namespace
}  // namespace zentri::service
