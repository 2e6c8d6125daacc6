#include <stdexcept>

#include "tests/sim/cad/EditorFixture.h"

using Events = std::vector<std::string>;
using Lines = std::vector<std::string>;

class EditorTest : public EditorFixture {
protected:
    void addExternal(const std::string& name, bool noHistory, std::function<void()> run) {
        external.commands.push_back({name, false, noHistory, std::move(run)});
    }
};

TEST_F(EditorTest, NotifiesStartAndEndWithGlobalNames) {
    type("c 0,0 5 ");
    EXPECT_EQ(listener.events, (Events{"start CIRCLE", "end CIRCLE"}));
}

TEST_F(EditorTest, ControlCCancelsTheCommandInProgress) {
    type("CIRCLE 0,0 ");
    EXPECT_FALSE(editor.isQuiescent());
    type("\x03");
    EXPECT_TRUE(editor.isQuiescent());
    EXPECT_EQ(lastLine(), "指定圆的半径或 [直径(D)]: *取消*");
    EXPECT_EQ(listener.events, (Events{"start CIRCLE", "cancel CIRCLE"}));
}

TEST_F(EditorTest, TwoCancelCharactersCancelATransparentCommandAndTheOuterOne) {
    type("LINE 0,0 'ZOOM W ");
    type("\x03\x03");
    EXPECT_TRUE(editor.isQuiescent());
    EXPECT_EQ(listener.events, (Events{"start LINE", "start ZOOM", "cancel ZOOM", "cancel LINE"}));
}

TEST_F(EditorTest, CancelAndCommandQueuedTogetherRunInOrder) {
    type("LINE 0,0 ");
    editor.sendString("\x03\x03");
    editor.sendString("CIRCLE\n");
    EXPECT_EQ(prompt(), "LINE 指定下一点或 [放弃(U)]: ");
    editor.processInput();
    EXPECT_EQ(prompt(), "CIRCLE 指定圆的圆心或 [三点(3P)/两点(2P)]: ");
}

TEST_F(EditorTest, CancelledLineKeepsItsSegmentsAsOneUndoStep) {
    type("LINE 0,0 1,0 2,0 \x1B");
    EXPECT_EQ(entities().size(), 2u);
    type("U ");
    EXPECT_TRUE(entities().empty());
}

TEST_F(EditorTest, CancelAtTheCommandPromptDiscardsTheTypedText) {
    type("CIR\x03");
    EXPECT_EQ(lastLine(), "命令: CIR*取消*");
    EXPECT_EQ(editor.commandLine().input(), "");
    EXPECT_TRUE(listener.events.empty());
}

TEST_F(EditorTest, UnknownCommandIsReported) {
    type("frobnicate\n");
    EXPECT_EQ(lines(), (Lines{"命令: frobnicate", "未知命令“FROBNICATE”。按 F1 查看帮助。"}));
    EXPECT_TRUE(listener.events.empty());
}

TEST_F(EditorTest, EnterRepeatsTheLastCommand) {
    type("\n");
    EXPECT_TRUE(lines().empty());
    type("C 0,0 5 \n");
    EXPECT_EQ(prompt(), "CIRCLE 指定圆的圆心或 [三点(3P)/两点(2P)]: ");
}

TEST_F(EditorTest, LeadingUnderscoreSelectsTheGlobalName) {
    type("_circle 0,0 5 ");
    EXPECT_EQ(entities().size(), 1u);
}

TEST_F(EditorTest, SpaceIsEnterExceptInStrings) {
    type("SETVAR CLAYER a b\n");
    EXPECT_EQ(lastLine(), "输入 CLAYER 的新值 <\"0\">: a b");
}

TEST_F(EditorTest, AnswersAreEchoedWithTheirPrompt) {
    type("CIRCLE\n1,2\n3\n");
    EXPECT_EQ(lines(), (Lines{"命令: CIRCLE", "指定圆的圆心或 [三点(3P)/两点(2P)]: 1,2",
                              "指定圆的半径或 [直径(D)]: 3"}));
}

TEST_F(EditorTest, StringsSentWithoutEchoPrintNothing) {
    editor.sendString("CIRCLE 0,0 5\n", false);
    editor.processInput();
    EXPECT_EQ(entities().size(), 1u);
    EXPECT_TRUE(lines().empty());
    EXPECT_TRUE(editor.commandLine().recallable().empty());
}

TEST_F(EditorTest, ArrowKeysRecallTypedLines) {
    type("C 0,0 5 REDRAW ");
    press(cad::EditKey::Up);
    EXPECT_EQ(editor.commandLine().input(), "REDRAW");
    press(cad::EditKey::Up);
    EXPECT_EQ(editor.commandLine().input(), "5");
    press(cad::EditKey::Down);
    press(cad::EditKey::Enter);
    EXPECT_EQ(lastLine(), "命令: REDRAW");
}

TEST_F(EditorTest, ExternalCommandRunsBetweenItsNotifications) {
    bool quiescent = true;
    addExternal("KQ_TEST", false, [&] {
        quiescent = editor.isQuiescent();
        listener.events.push_back("run");
    });
    type("KQ_TEST\n");
    EXPECT_EQ(listener.events, (Events{"start KQ_TEST", "run", "end KQ_TEST"}));
    EXPECT_FALSE(quiescent);
    EXPECT_TRUE(editor.isQuiescent());
    EXPECT_EQ(lines(), Lines{"命令: KQ_TEST"});
    EXPECT_EQ(prompt(), "命令: ");
}

TEST_F(EditorTest, ExternalCommandTakesPrecedenceOverABuiltInOne) {
    int runs = 0;
    addExternal("LINE", false, [&] { ++runs; });
    type("LINE\n");
    EXPECT_EQ(runs, 1);
}

TEST_F(EditorTest, FullStopSelectsTheBuiltInCommand) {
    int runs = 0;
    addExternal("CIRCLE", false, [&] { ++runs; });
    addExternal("OTHER", false, [&] { ++runs; });
    type("CIRCLE\n");
    EXPECT_EQ(runs, 1);
    type(".CIRCLE 0,0 5 ");
    type("._circle 0,0 6 ");
    type("_.circle 0,0 7 ");
    EXPECT_EQ(entities().size(), 3u);
    type(".OTHER\n");
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(lastLine(), "未知命令“.OTHER”。按 F1 查看帮助。");
}

TEST_F(EditorTest, NoHistoryCommandLeavesNoTrace) {
    int runs = 0;
    addExternal("_refresh", true, [&] { ++runs; });
    type("REDRAW\n");
    const Lines before = lines();
    type("_refresh\n");
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(lines(), before);
    EXPECT_EQ(editor.commandLine().recallable(), Lines{"REDRAW"});
    EXPECT_EQ(listener.events.back(), "end _refresh");
    type("\n");
    EXPECT_EQ(listener.events.back(), "end REDRAW");
}

TEST_F(EditorTest, ExternalCommandThatThrowsIsReportedAsFailed) {
    addExternal("BAD", false, [] { throw std::runtime_error("broken"); });
    type("BAD\n");
    EXPECT_EQ(lastLine(), "命令 BAD 失败: broken");
    EXPECT_EQ(listener.events.back(), "fail BAD");
    EXPECT_TRUE(editor.isQuiescent());
}

TEST_F(EditorTest, ExternalCommandMayThrowAnyType) {
    addExternal("BAD", false, [] { throw 1; });
    type("BAD\n");
    EXPECT_EQ(lastLine(), "命令 BAD 失败。");
    EXPECT_EQ(listener.events.back(), "fail BAD");
    EXPECT_TRUE(editor.isQuiescent());
}

TEST_F(EditorTest, InputIsProcessedInSlicesWithinTheTimeLimit) {
    constexpr std::chrono::seconds kNoTime{0};
    EXPECT_FALSE(editor.processInput(kNoTime));
    EXPECT_FALSE(editor.hasWork());
    editor.sendString("LINE\n0,0\n1,1\n\n");
    int turns = 0;
    while (editor.hasWork()) {
        EXPECT_TRUE(editor.processInput(kNoTime));
        ++turns;
    }
    EXPECT_EQ(turns, 14);  // one for each character
    EXPECT_EQ(entities().size(), 1U);
    editor.sendString("LINE\n");
    editor.pause();
    EXPECT_FALSE(editor.hasWork());
    EXPECT_TRUE(editor.hasInput());
}

TEST_F(EditorTest, StringsSentByACommandRunAfterItEnds) {
    addExternal("SENDER", false, [&] {
        editor.sendString("CIRCLE\n");
        EXPECT_FALSE(editor.processInput());
        EXPECT_TRUE(editor.hasInput());
    });
    type("SENDER\n");
    EXPECT_EQ(listener.events, (Events{"start SENDER", "end SENDER", "start CIRCLE"}));
}

TEST_F(EditorTest, EveryInputWakesTheProgram) {
    editor.sendString("L");
    editor.typeKey(cad::EditKey::Enter);
    editor.pick({0, 0});
    EXPECT_EQ(services.wakes, 3);
    EXPECT_TRUE(editor.hasInput());
}

TEST_F(EditorTest, EscapeDiscardsPendingInput) {
    editor.sendString("CIRCLE 0,0 5\n");
    editor.escape();
    editor.processInput();
    EXPECT_TRUE(entities().empty());
    EXPECT_TRUE(listener.events.empty());
}

TEST_F(EditorTest, PickIsIgnoredWithoutAPointPrompt) {
    pick(1, 1);
    type("SETVAR ");
    pick(1, 1);
    EXPECT_EQ(prompt(), "SETVAR 输入变量名或 [?]: ");
}

TEST_F(EditorTest, ListenerMayRemoveItselfWhileBeingNotified) {
    struct Leaver : cad::EditorListener {
        explicit Leaver(cad::Editor& e) : editor(e) {}
        void commandWillStart(const std::string&) override { editor.removeListener(this); }
        cad::Editor& editor;
    };
    Leaver leaver(editor);
    editor.addListener(&leaver);
    type("REDRAW REDRAW ");
    EXPECT_EQ(listener.events.size(), 4u);
}

TEST_F(EditorTest, CarriageReturnAndLineFeedAreOneEnter) {
    type("LINE\r\n0,0\r\n");
    EXPECT_EQ(prompt(), "LINE 指定下一点或 [放弃(U)]: ");
}

TEST_F(EditorTest, ChineseKeywordsAreAccepted) {
    type("LINE 0,0 1,0 1,1 闭合\n");
    EXPECT_EQ(entities().size(), 3u);
}
