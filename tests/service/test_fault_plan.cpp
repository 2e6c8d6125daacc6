#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "service/FaultPlan.h"

namespace zentri::service {
namespace {

std::string parseError(const std::string& text) {
    try {
        parseFault(text);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return {};
}

TEST(FaultPlan, ParsesAFault) {
    const Fault fault = parseFault("chat:cut-after=3,times=2,skip=1");
    EXPECT_EQ(fault.call, Call::Chat);
    EXPECT_EQ(fault.kind, FaultKind::CutAfter);
    EXPECT_EQ(fault.number(), 3);
    EXPECT_EQ(fault.times, 2);
    EXPECT_EQ(fault.skip, 1);
}

TEST(FaultPlan, ValueMayContainCommasAndEqualsSigns) {
    EXPECT_EQ(parseFault("list:msg=a,b=c,times=0").value, "a,b=c");
    EXPECT_EQ(parseFault(R"(read:data=[{"role":"user"},2],skip=1)").value, R"([{"role":"user"},2])");
}

TEST(FaultPlan, ReportsWhatIsWrongWithAFault) {
    EXPECT_NE(parseError("cut-after=3").find("CALL:KIND"), std::string::npos);
    EXPECT_NE(parseError("talk:crlf").find("unknown call 'talk'"), std::string::npos);
    EXPECT_NE(parseError("chat:explode").find("unknown fault 'explode'"), std::string::npos);
    EXPECT_NE(parseError("chat:cut-after").find("needs a number"), std::string::npos);
    EXPECT_NE(parseError("chat:cut-after=-1").find("needs a number"), std::string::npos);
    EXPECT_NE(parseError("chat:cut-after=99999999999999").find("needs a number"), std::string::npos);
    EXPECT_NE(parseError("chat:crlf=1").find("takes no value"), std::string::npos);
    EXPECT_NE(parseError("list:data={").find("needs JSON"), std::string::npos);
    EXPECT_NE(parseError("any:status=99").find("200 to 599"), std::string::npos);
    EXPECT_NE(parseError("chat:crlf,times=x").find("'times' needs a number"), std::string::npos);
}

TEST(FaultPlan, AppliesToItsCallOnlyAndTheGivenNumberOfTimes) {
    FaultPlan plan;
    plan.add(parseFault("list:status=500,times=2,skip=1"));
    EXPECT_FALSE(plan.take(Call::Chat).has(FaultKind::Status));
    EXPECT_FALSE(plan.take(Call::List).has(FaultKind::Status));
    EXPECT_TRUE(plan.take(Call::List).has(FaultKind::Status));
    EXPECT_FALSE(plan.take(Call::Read).has(FaultKind::Status));
    EXPECT_TRUE(plan.take(Call::List).has(FaultKind::Status));
    EXPECT_FALSE(plan.take(Call::List).has(FaultKind::Status));
}

TEST(FaultPlan, AnyMatchesEveryCallAndZeroTimesMeansAlways) {
    FaultPlan plan;
    plan.add(parseFault("any:code=7,times=0"));
    for (const Call call : {Call::Chat, Call::Create, Call::List, Call::Read, Call::List}) {
        EXPECT_EQ(plan.take(call).number(FaultKind::Code), 7);
    }
    plan.clear();
    EXPECT_FALSE(plan.take(Call::List).has(FaultKind::Code));
}

TEST(FaultPlan, SeveralFaultsCanApplyToOneRequest) {
    FaultPlan plan;
    plan.add(parseFault("list:code=500"));
    plan.add(parseFault("list:msg=broken"));
    const RequestFaults faults = plan.take(Call::List);
    EXPECT_EQ(faults.number(FaultKind::Code), 500);
    EXPECT_EQ(faults.find(FaultKind::Message)->value, "broken");
}

TEST(FaultPlan, ConvertsFromAndToJson) {
    FaultPlan plan;
    plan.add(
        faultFromJson(nlohmann::json::parse(R"({"call":"chat","kind":"huge-event","value":1000,"skip":2})")));
    const nlohmann::json list = plan.toJson();
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0]["call"], "chat");
    EXPECT_EQ(list[0]["kind"], "huge-event");
    EXPECT_EQ(list[0]["value"], "1000");
    EXPECT_EQ(list[0]["times"], 1);
    EXPECT_EQ(list[0]["skip"], 2);
    for (const char* bad : {"[]", "{}", R"({"kind":"x"})", R"({"kind":"crlf","times":-1})", R"({"kind":3})",
                            R"({"kind":"crlf","other":1})", "null"}) {
        EXPECT_THROW(faultFromJson(nlohmann::json::parse(bad)), std::invalid_argument) << bad;
    }
}

TEST(FaultPlan, HelpListsEveryKind) {
    const std::string help = faultHelp();
    for (const char* kind : {"status", "slow-headers", "cut-after", "cut-in-event", "cut-in-char",
                             "end-in-event", "crlf", "empty-events", "huge-event", "never-ending",
                             "invalid-utf8", "broken-json", "code", "msg", "data"}) {
        EXPECT_NE(help.find(std::string("  ") + kind), std::string::npos) << kind;
    }
}

}  // namespace
}  // namespace zentri::service
