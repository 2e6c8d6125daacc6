#include "sim/cad/core/SystemVariables.h"

#include "tests/sim/cad/EditorFixture.h"

using cad::SetVariable;
using cad::SystemVariables;
using Events = std::vector<std::string>;

TEST(SystemVariables, NamesAreNotCaseSensitive) {
    SystemVariables variables;
    ASSERT_NE(variables.find("colortheme"), nullptr);
    EXPECT_EQ(variables.find("colortheme")->name, "COLORTHEME");
    EXPECT_EQ(variables.find("NOSUCHVAR"), nullptr);
}

TEST(SystemVariables, ChangeIsNotifiedBeforeAndAfter) {
    SystemVariables variables;
    RecordingListener listener;
    variables.setListener(&listener);
    EXPECT_EQ(variables.setFromText("colortheme", "1"), SetVariable::Done);
    EXPECT_EQ(variables.integer("COLORTHEME"), 1);
    EXPECT_EQ(listener.events, (Events{"will COLORTHEME", "changed COLORTHEME"}));
}

TEST(SystemVariables, RejectedValueIsNotifiedAsFailedAndNotStored) {
    SystemVariables variables;
    RecordingListener listener;
    variables.setListener(&listener);
    EXPECT_EQ(variables.setFromText("COLORTHEME", "2"), SetVariable::OutOfRange);
    EXPECT_EQ(variables.setFromText("COLORTHEME", "dark"), SetVariable::WrongType);
    EXPECT_EQ(variables.integer("COLORTHEME"), 0);
    EXPECT_EQ(listener.events,
              (Events{"will COLORTHEME", "refused COLORTHEME", "will COLORTHEME", "refused COLORTHEME"}));
}

TEST(SystemVariables, ReadOnlyAndUnknownVariablesAreNotNotified) {
    SystemVariables variables;
    RecordingListener listener;
    variables.setListener(&listener);
    EXPECT_EQ(variables.setFromText("DWGNAME", "x"), SetVariable::ReadOnly);
    EXPECT_EQ(variables.setFromText("NOSUCHVAR", "1"), SetVariable::Unknown);
    EXPECT_TRUE(listener.events.empty());
}

TEST(SystemVariables, TypesAndRangesAreEnforced) {
    SystemVariables variables;
    EXPECT_EQ(variables.setFromText("LTSCALE", "2"), SetVariable::Done);
    EXPECT_DOUBLE_EQ(variables.real("LTSCALE"), 2);
    EXPECT_EQ(variables.set("LTSCALE", 3), SetVariable::Done);
    EXPECT_EQ(variables.setFromText("LTSCALE", "0"), SetVariable::OutOfRange);
    EXPECT_EQ(variables.setFromText("OSMODE", "32768"), SetVariable::OutOfRange);
    EXPECT_EQ(variables.setFromText("OSMODE", "1.5"), SetVariable::WrongType);
    EXPECT_EQ(variables.setFromText("CLAYER", "墙体"), SetVariable::Done);
    EXPECT_EQ(variables.setFromText("CLAYER", ""), SetVariable::OutOfRange);
    EXPECT_EQ(variables.setFromText("LIMMAX", "100,50"), SetVariable::Done);
    EXPECT_EQ(variables.point("LIMMAX"), (cad::Point{100, 50}));
    EXPECT_EQ(variables.setFromText("LIMMAX", "100"), SetVariable::WrongType);
}

TEST(SystemVariables, FormatsValuesAsPromptsShowThem) {
    SystemVariables variables;
    EXPECT_EQ(variables.format(5), "5");
    EXPECT_EQ(variables.format(1.5), "1.5000");
    EXPECT_EQ(variables.format(std::string("0")), "\"0\"");
    EXPECT_EQ(variables.format(cad::Point{1, 2}), "1.0000,2.0000");
    variables.setFromText("LUPREC", "2");
    EXPECT_EQ(variables.format(1.5), "1.50");
}

class LiveVariables : public EditorFixture {};

TEST_F(LiveVariables, FollowTheEditor) {
    EXPECT_EQ(editor.variables().integer("CMDACTIVE"), 0);
    type("LINE 0,0 'ZOOM ");
    EXPECT_EQ(editor.variables().integer("CMDACTIVE"), 1);
    EXPECT_EQ(std::get<std::string>(editor.variables().find("CMDNAMES")->current()), "LINE'ZOOM");
}
