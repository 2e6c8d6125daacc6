#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tests/sim/cad/EditorFixture.h"

class SystemCommands : public EditorFixture {
protected:
    bool printed(const std::string& text) const {
        return editor.commandLine().text().find(text) != std::string::npos;
    }
};

TEST_F(SystemCommands, SetvarAsksForTheNewValue) {
    type("SETVAR ");
    EXPECT_EQ(prompt(), "SETVAR 输入变量名或 [?]: ");
    type("colortheme ");
    EXPECT_EQ(prompt(), "SETVAR 输入 COLORTHEME 的新值 <0>: ");
    type("1 ");
    EXPECT_EQ(editor.variables().integer("COLORTHEME"), 1);
    EXPECT_TRUE(editor.isQuiescent());
}

TEST_F(SystemCommands, SetvarKeepsTheValueOnEnter) {
    type("SETVAR LTSCALE \n");
    EXPECT_DOUBLE_EQ(editor.variables().real("LTSCALE"), 1);
    EXPECT_TRUE(editor.isQuiescent());
}

TEST_F(SystemCommands, SetvarAsksAgainAfterARejectedValue) {
    type("SETVAR COLORTHEME 7 ");
    EXPECT_EQ(lastLine(), "需要 0 和 1 之间的整数。");
    EXPECT_FALSE(editor.isQuiescent());
    type("x ");
    EXPECT_EQ(lastLine(), "需要整数值。");
    type("1 ");
    EXPECT_EQ(editor.variables().integer("COLORTHEME"), 1);
}

TEST_F(SystemCommands, SetvarShowsReadOnlyVariables) {
    type("SETVAR DWGNAME ");
    EXPECT_EQ(lastLine(), "DWGNAME = \"Drawing1.dwg\" (只读)");
    EXPECT_TRUE(editor.isQuiescent());
}

TEST_F(SystemCommands, SetvarStringMayContainSpaces) {
    type("SETVAR CLAYER my layer\n");
    EXPECT_EQ(std::get<std::string>(editor.variables().find("CLAYER")->value), "my layer");
}

TEST_F(SystemCommands, SetvarListsByPattern) {
    type("SETVAR ? C*\n");
    EXPECT_TRUE(printed("COLORTHEME      0"));
    EXPECT_TRUE(printed("(只读)"));
    EXPECT_FALSE(printed("OSMODE"));
}

TEST_F(SystemCommands, SetvarRejectsUnknownNames) {
    type("SETVAR NOSUCHVAR ");
    EXPECT_EQ(lastLine(), "未知变量名。输入 SETVAR ? 列出变量。");
    EXPECT_FALSE(editor.isQuiescent());
}

TEST_F(SystemCommands, VariableNameIsACommand) {
    type("COLORTHEME 1\n");
    EXPECT_EQ(editor.variables().integer("COLORTHEME"), 1);
    EXPECT_EQ(listener.events, (std::vector<std::string>{"start SETVAR", "will COLORTHEME",
                                                         "changed COLORTHEME", "end SETVAR"}));
}

TEST_F(SystemCommands, ArxLoadsListsAndUnloads) {
    services.loadable = {"/some folder/a.arx"};
    type("ARX L /some folder/a.arx\n");
    EXPECT_EQ(lastLine(), "/some folder/a.arx 已加载。");
    type("ARX ? ");
    EXPECT_EQ(lastLine(), "    /some folder/a.arx");
    type("ARX U /some folder/a.arx\n");
    EXPECT_TRUE(services.modules.empty());
    type("ARX U b.arx\n");
    EXPECT_EQ(lastLine(), "b.arx 未加载或无法卸载。");
    type("ARX L b.arx\n");
    EXPECT_EQ(lastLine(), "b.arx 无法加载。");
    type("ARX ?\n");
    EXPECT_EQ(lastLine(), "没有加载的 ARX 应用程序。");
}

TEST_F(SystemCommands, QuitAsksTheProgramToQuit) {
    type("QUIT\n");
    EXPECT_EQ(services.quits, 1);
    type("exit\n");
    EXPECT_EQ(services.quits, 2);
}

TEST_F(SystemCommands, HelpNamesEveryCommandAndAlias) {
    type("HELP\n");
    for (const cad::BuiltInCommand& command : cad::builtInCommands()) {
        EXPECT_TRUE(printed("  " + command.name)) << command.name;
        EXPECT_TRUE(printed(command.help)) << command.name;
    }
    EXPECT_TRUE(printed("REC, RECTANGLE"));
}

TEST_F(SystemCommands, ScriptCommandRunsAFileBeforePendingInput) {
    const std::string path = testing::TempDir() + "zentri host play.scr";
    std::ofstream(path) << "CIRCLE\n0,0\n5\n";
    type("SCRIPT " + path + "\nU\n");
    EXPECT_TRUE(entities().empty());
    EXPECT_EQ(lastLine(), "CIRCLE");
    std::filesystem::remove(path);
}

TEST_F(SystemCommands, ScriptCommandReportsAMissingFile) {
    type("SCRIPT /no/such.scr\n");
    EXPECT_EQ(lastLine(), "找不到脚本文件“/no/such.scr”。");
}

TEST_F(SystemCommands, DelaySuspendsInputUntilResumed) {
    type("DELAY 250\nCIRCLE 0,0 5\n");
    EXPECT_EQ(services.delays, std::vector<int>{250});
    EXPECT_TRUE(entities().empty());
    EXPECT_TRUE(editor.hasInput());
    editor.resume();
    editor.processInput();
    EXPECT_EQ(entities().size(), 1u);
}

TEST_F(SystemCommands, EscapeEndsADelayAndDiscardsTheScript) {
    type("DELAY 250\nCIRCLE 0,0 5\n");
    editor.escape();
    editor.processInput();
    EXPECT_TRUE(entities().empty());
    EXPECT_FALSE(editor.hasInput());
}
