#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "chat/ZR_AiChatReplyParser.h"
#include "host/core/ZR_ZentriText.h"

namespace {

QString envelope(const char* data) {
    return QStringLiteral(R"({"code":200,"msg":"success","data":%1})").arg(QString::fromUtf8(data));
}

/// Bodies that are not JSON, not an envelope, or an envelope with wrong types or values.
const char* const kHostileBodies[] = {
    "",
    " ",
    "null",
    "true",
    "200",
    "\"success\"",
    "[]",
    "[{\"code\":200,\"msg\":\"success\"}]",
    "{",
    "{\"code\":200,\"msg\":\"success\",\"data\":[",
    "{\"code\":200,\"msg\":\"success\",\"data\":[}",
    "{'code':200}",
    "<html><body>502 Bad Gateway</body></html>",
    "{\"code\":\"200\",\"msg\":\"success\",\"data\":[]}",
    "{\"code\":200.5,\"msg\":\"success\",\"data\":[]}",
    "{\"code\":1e300,\"msg\":\"success\",\"data\":[]}",
    "{\"code\":true,\"msg\":\"success\",\"data\":[]}",
    "{\"code\":[200],\"msg\":\"success\",\"data\":[]}",
    "{\"code\":200,\"msg\":\"Success\",\"data\":[]}",
    "{\"code\":200,\"msg\":\"success \",\"data\":[]}",
    "{\"code\":200,\"msg\":[\"success\"],\"data\":[]}",
    "{\"code\":200,\"msg\":null,\"data\":[]}",
    "{\"code\":200,\"data\":[]}",
    "{\"msg\":\"success\",\"data\":[]}",
    "{\"Code\":200,\"Msg\":\"success\",\"data\":[]}",
    "{\"code\":-200,\"msg\":\"success\",\"data\":[]}",
    "{\"code\":4294967496,\"msg\":\"success\",\"data\":[]}",
};

class HostileBody : public testing::TestWithParam<const char*> {};

TEST_P(HostileBody, IsAFailureForEveryCall) {
    const QString body = QString::fromUtf8(GetParam());
    EXPECT_TRUE(parseCreatedSession(body).IsEmpty());

    CStringArray ids;
    ids.Add(_T("untouched"));
    EXPECT_FALSE(parseSessionIds(body, ids).isSuccess());
    EXPECT_EQ(ids.GetCount(), 1);

    ZR_AiChatSingleChatRecord record;
    EXPECT_FALSE(parseSessionChats(body, record).isSuccess());
    EXPECT_EQ(record.GetUnitCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(Bodies, HostileBody, testing::ValuesIn(kHostileBodies));

/// The time of a message with this "createTime".
std::int64_t timeOf(const std::string& createTime) {
    const std::string data = R"([{"role":"user","message":"m")" +
                             (createTime.empty() ? std::string() : ",\"createTime\":" + createTime) + "}]";
    ZR_AiChatSingleChatRecord record;
    EXPECT_TRUE(parseSessionChats(envelope(data.c_str()), record).isSuccess());
    EXPECT_EQ(record.GetUnitCount(), 1);
    return record.GetUseTime();
}

}  // namespace

TEST(ReplyParser, ReadsTheIdOfACreatedSession) {
    EXPECT_EQ(parseCreatedSession(envelope("\"abc-1\"")), _T("abc-1"));
}

TEST(ReplyParser, ReadsNoIdFromDataThatIsNotAString) {
    for (const char* data : {"null", "7", "true", "[\"id\"]", "{\"id\":\"x\"}"}) {
        EXPECT_TRUE(parseCreatedSession(envelope(data)).IsEmpty()) << data;
    }
}

TEST(ReplyParser, ReturnsCodeAndMessageOfAFailure) {
    CStringArray ids;
    const auto status = parseSessionIds(QStringLiteral(R"({"code":401,"msg":"未登录"})"), ids);
    EXPECT_EQ(status.code, 401);
    EXPECT_EQ(status.message, QStringLiteral("未登录"));
}

TEST(ReplyParser, TreatsAnyOtherMessageThanSuccessAsAFailure) {
    ZR_AiChatSingleChatRecord record;
    const auto status = parseSessionChats(QStringLiteral(R"({"code":200,"msg":"ok","data":[]})"), record);
    EXPECT_FALSE(status.isSuccess());
    EXPECT_EQ(status.code, 200);
}

TEST(ReplyParser, AcceptsACodeWithAZeroFraction) {
    EXPECT_EQ(parseCreatedSession(QStringLiteral(R"({"code":200.0,"msg":"success","data":"id"})")), _T("id"));
}

TEST(ReplyParser, ReadsSessionIdsInOrderIncludingEmptyOnes) {
    CStringArray ids;
    ids.Add(_T("old"));
    const char* data = R"([{"userChatSessionId":"b","sessionTitle":"t","useTime":"1","createTime":"2"},
                           {"userChatSessionId":""}, {"userChatSessionId":7}, {}, 3, "x", null,
                           {"userChatSessionId":"a"}])";
    ASSERT_TRUE(parseSessionIds(envelope(data), ids).isSuccess());
    ASSERT_EQ(ids.GetCount(), 8);
    EXPECT_EQ(ids[0], _T("b"));
    for (int i = 1; i < 7; ++i) {
        EXPECT_TRUE(ids[i].IsEmpty()) << i;
    }
    EXPECT_EQ(ids[7], _T("a"));
}

TEST(ReplyParser, SucceedsWithoutIdsOnAnEmptyArray) {
    CStringArray ids;
    ids.Add(_T("old"));
    EXPECT_TRUE(parseSessionIds(envelope("[]"), ids).isSuccess());
    EXPECT_EQ(ids.GetCount(), 0);
}

TEST(ReplyParser, TreatsDataThatIsNotAnArrayAsEmpty) {
    for (const char* data : {"null", "7", "\"x\"", "{\"0\":{\"role\":\"user\"}}"}) {
        CStringArray ids;
        EXPECT_TRUE(parseSessionIds(envelope(data), ids).isSuccess()) << data;
        EXPECT_EQ(ids.GetCount(), 0) << data;
        ZR_AiChatSingleChatRecord record;
        EXPECT_TRUE(parseSessionChats(envelope(data), record).isSuccess()) << data;
        EXPECT_EQ(record.GetUnitCount(), 0) << data;
    }
}

TEST(ReplyParser, SkipsOtherRolesAndTakesTheFirstKeptMessageAsTitle) {
    const char* data = R"([{"role":"system","message":"no","createTime":1},
                           {"role":"User","message":"no","createTime":1},
                           {"message":"no","createTime":1}, {"role":0,"message":"no"}, null, 7, [],
                           {"role":"assistant","message":"答","createTime":3},
                           {"role":"user","message":"问","createTime":2}])";
    ZR_AiChatSingleChatRecord record;
    ASSERT_TRUE(parseSessionChats(envelope(data), record).isSuccess());
    SingleChatUnitList units;
    record.GetUnits(units);
    ASSERT_EQ(units.GetCount(), 2);
    EXPECT_EQ(units[0].role, kChatRoleAssistant);
    EXPECT_EQ(units[0].message, _T("答"));
    EXPECT_EQ(units[0].time, 3);
    EXPECT_EQ(units[1].role, kChatRoleUser);
    EXPECT_EQ(record.GetTitle(), _T("答"));
}

TEST(ReplyParser, TreatsAMessageThatIsNotAStringAsEmpty) {
    ZR_AiChatSingleChatRecord record;
    ASSERT_TRUE(parseSessionChats(envelope(R"([{"role":"user","message":7}])"), record).isSuccess());
    EXPECT_EQ(record.GetUnitCount(), 1);
    EXPECT_TRUE(record.GetLastUserInput().IsEmpty());
}

TEST(ReplyParser, NormalisesTimesToSeconds) {
    EXPECT_EQ(timeOf("1700000000000"), 1700000000);
    EXPECT_EQ(timeOf("1700000000"), 1700000000);
    EXPECT_EQ(timeOf("1000000000000"), 1000000000000);
    EXPECT_EQ(timeOf("1000000000001"), 1000000000);
    EXPECT_EQ(timeOf("1700000000999"), 1700000000);
    EXPECT_EQ(timeOf("-5"), -5);
}

TEST(ReplyParser, ReadsTimesUpToTheLimitOf64Bits) {
    EXPECT_EQ(timeOf("9223372036854775807"), 9223372036854775);
    EXPECT_EQ(timeOf("9223372036854774999"), 9223372036854774) << "not rounded to a floating-point number";
    EXPECT_EQ(timeOf("9007199254740993999"), 9007199254740993);
    EXPECT_EQ(timeOf("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(timeOf("1.7e12"), 1700000000);
    EXPECT_EQ(timeOf("1700000000.9"), 1700000000);
}

TEST(ReplyParser, ReadsAMissingOrNonNumericTimeAsZero) {
    for (const char* time : {"", "null", "\"1700000000\"", "true", "[1]", "{}", "1e300", "-1e300"}) {
        EXPECT_EQ(timeOf(time), 0) << time;
    }
}

TEST(ReplyParser, KeepsControlAndNullCharacters) {
    ZR_AiChatSingleChatRecord record;
    ASSERT_TRUE(parseSessionChats(envelope(R"([{"role":"user","message":"a\u0000b\t😀\ud800"}])"), record)
                    .isSuccess());
    const QString text = toQString(record.GetLastUserInput());
    ASSERT_GE(text.size(), 6);
    EXPECT_EQ(text.at(0), QLatin1Char('a'));
    EXPECT_EQ(text.at(1), QChar(0));
    EXPECT_EQ(text.at(3), QLatin1Char('\t'));
    EXPECT_EQ(text.mid(4, 2), QStringLiteral("😀"));
}

TEST(ReplyParser, SurvivesDeepNesting) {
    const int depth = 100000;
    const QString body = QString(depth, QLatin1Char('[')) + QString(depth, QLatin1Char(']'));
    EXPECT_TRUE(parseCreatedSession(body).IsEmpty());
    EXPECT_TRUE(parseCreatedSession(envelope(body.toUtf8().constData())).IsEmpty());
}
