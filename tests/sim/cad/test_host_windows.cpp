// The program's windows, driven by user input.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>

#include "tests/sim/cad/HostProcess.h"

namespace {

using Json = HostProcess::Json;

class HostWindows : public testing::Test {
protected:
    Json entities() { return host.ask("drawing")["entities"]; }

    void clickDrawing(double x, double y, const std::string& button = "left") {
        const Json at = host.ask("toScreen", {{"x", x}, {"y", y}});
        host.ask("click", {{"x", at["x"]}, {"y", at["y"]}, {"button", button}});
    }

    std::string pixelOf(const std::string& kind, int x, int y) {
        return host.ask("pixel", {{"window", kind}, {"x", x}, {"y", y}})["color"];
    }

    /// Whether the caret is visible on the screen now.
    bool caretIsSeen() {
        const Json found = host.ask("findColor", {{"color", kCaretColor}, {"window", "commandLine"}});
        const Json& clusters = found["clusters"];
        return std::any_of(clusters.begin(), clusters.end(), [](const Json& cluster) {
            return cluster["width"] <= 2 && cluster["height"] >= 12;
        });
    }

    /// Whether the caret is invisible for longer than a blink.
    bool caretStaysAway() {
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(1200);
        while (std::chrono::steady_clock::now() < end) {
            if (caretIsSeen()) {
                return false;
            }
        }
        return true;
    }

    static constexpr const char* kCaretColor = "#F2F4F7";
    HostProcess host{{"--no-state", "--geometry", "1000x700", "--theme", "dark"}};
};

class HostModules : public HostWindows {
protected:
    HostModules() {
        host.ask("arx", {{"load", ZENTRI_DUMMY_MODULE}});
        host.ask("clearHistory");
    }

    bool boxIsOpen() {
        return HostProcess::waitUntil([&] { return !host.ask("messageBoxes")["boxes"].empty(); });
    }
};

}  // namespace

TEST_F(HostWindows, CircleTypedAtTheCommandLineIsDrawn) {
    host.type("circle\n");
    ASSERT_TRUE(host.waitForPrompt("CIRCLE 指定圆的圆心"));
    host.type("100,100\n50\n");
    host.idle();
    ASSERT_EQ(entities().size(), 1u);
    EXPECT_EQ(entities()[0]["center"], (Json{100, 100}));
    EXPECT_EQ(entities()[0]["radius"], 50);
}

TEST_F(HostWindows, ClicksAnswerPointPrompts) {
    host.type("CIRCLE\n");
    ASSERT_TRUE(host.waitForPrompt("圆心"));
    clickDrawing(100, 100);
    ASSERT_TRUE(host.waitForPrompt("半径"));
    clickDrawing(130, 140);
    host.idle();
    ASSERT_EQ(entities().size(), 1u);
    EXPECT_NEAR(entities()[0]["radius"].get<double>(), 50, 1.5);
    EXPECT_NEAR(entities()[0]["center"][0].get<double>(), 100, 1);
}

TEST_F(HostWindows, RightClickActsAsEnter) {
    host.type("LINE\n0,0\n50,50\n");
    clickDrawing(10, 200, "right");
    host.idle();
    EXPECT_EQ(entities().size(), 1u);
}

TEST_F(HostWindows, EscapeCancelsAndArrowsRecall) {
    host.type("LINE\n");
    ASSERT_TRUE(host.waitForPrompt("LINE"));
    host.ask("key", {{"key", "Escape"}});
    host.idle();
    EXPECT_TRUE(host.waitForLine("*取消*"));
    host.ask("key", {{"key", "Up"}});
    EXPECT_TRUE(HostProcess::waitUntil([&] { return host.ask("commandLine")["input"] == "LINE"; }));
    host.ask("key", {{"key", "Backspace"}});
    EXPECT_TRUE(HostProcess::waitUntil([&] { return host.ask("commandLine")["input"] == "LIN"; }));
}

TEST_F(HostWindows, RealKeysReachTheCommandLine) {
    for (const char* key : {"l", "i", "n", "e"}) {
        host.ask("key", {{"key", key}, {"real", true}});
    }
    EXPECT_TRUE(HostProcess::waitUntil([&] { return host.ask("commandLine")["input"] == "line"; }));
    host.ask("key", {{"key", "Return"}, {"real", true}});
    EXPECT_TRUE(host.waitForPrompt("LINE 指定第一个点"));
}

TEST_F(HostWindows, ChineseTextReachesTheCommandLine) {
    host.type("SETVAR\nCLAYER\n墙体😀 A层\n");
    host.idle();
    EXPECT_EQ(host.ask("vars", {{"get", "CLAYER"}})["value"], "墙体😀 A层");
}

TEST_F(HostWindows, KeysReachTheCommandLineAfterAClickOnIt) {
    host.ask("clickWindow", {{"window", "commandLine"}});
    host.type("C 0,0 5 ");
    host.idle();
    EXPECT_EQ(entities().size(), 1u);
}

TEST_F(HostWindows, WheelZoomsAboutThePointer) {
    const double before = host.ask("drawing")["view"]["unitsPerPixel"];
    const Json at = host.ask("toScreen", {{"x", 50}, {"y", 50}});
    host.ask("wheel", {{"x", at["x"]}, {"y", at["y"]}, {"notches", 2}});
    EXPECT_TRUE(HostProcess::waitUntil(
        [&] { return host.ask("drawing")["view"]["unitsPerPixel"].get<double>() < before * 0.7; }));
    const Json after = host.ask("toScreen", {{"x", 50}, {"y", 50}});
    EXPECT_NEAR(after["x"].get<int>(), at["x"].get<int>(), 2);
}

TEST_F(HostWindows, MiddleDragPans) {
    const Json before = host.ask("drawing")["view"]["center"];
    const Json view = host.window("view")["rect"];
    const int x = view["x"].get<int>() + 300;
    const int y = view["y"].get<int>() + 200;
    host.ask("drag", {{"from", {x, y}}, {"to", {x + 80, y}}, {"button", "middle"}});
    EXPECT_TRUE(HostProcess::waitUntil([&] {
        return host.ask("drawing")["view"]["center"][0].get<double>() < before[0].get<double>() - 10;
    }));
}

TEST_F(HostWindows, MenuItemsRunCommands) {
    host.ask("menu", {{"path", {"绘图", "圆 圆心、半径"}}});
    ASSERT_TRUE(host.waitForPrompt("CIRCLE"));
    // A menu command cancels the command in progress.
    host.ask("menu", {{"path", {"绘图", "直线"}}});
    ASSERT_TRUE(host.waitForPrompt("LINE"));
    EXPECT_TRUE(host.waitForLine("*取消*"));
}

TEST_F(HostWindows, MenuOpenedByItsMnemonicRunsACommand) {
    host.ask("key", {{"key", "d"}, {"alt", true}, {"real", true}});
    host.ask("key", {{"key", "c"}, {"real", true}});
    EXPECT_TRUE(host.waitForPrompt("CIRCLE"));
}

TEST_F(HostWindows, ThemeChangesEveryWindowsBackground) {
    const std::vector<std::string> kinds = {"view", "commandLine", "statusBar"};
    std::vector<std::string> dark;
    for (const std::string& kind : kinds) {
        dark.push_back(pixelOf(kind, 3, 3));
    }
    host.type("COLORTHEME\n1\n");
    host.idle();
    for (size_t i = 0; i < kinds.size(); ++i) {
        EXPECT_TRUE(HostProcess::waitUntil([&] { return pixelOf(kinds[i], 3, 3) != dark[i]; })) << kinds[i];
    }
    host.ask("vars", {{"set", "COLORTHEME"}, {"value", 0}});
    for (size_t i = 0; i < kinds.size(); ++i) {
        EXPECT_TRUE(HostProcess::waitUntil([&] { return pixelOf(kinds[i], 3, 3) == dark[i]; })) << kinds[i];
    }
}

TEST_F(HostWindows, DrawnEntitiesAreVisibleUntilUndone) {
    // The crosshair is as bright as an entity and may be anywhere, but not on both of these edges.
    const auto brightAt = [&](double x, double y) {
        constexpr int kReach = 2;
        const Json at = host.ask("toScreen", {{"x", x}, {"y", y}});
        const Json view = host.window("view")["rect"];
        const int left = at["x"].get<int>() - view["x"].get<int>() - kReach;
        const int top = at["y"].get<int>() - view["y"].get<int>() - kReach;
        return !host.ask("findColor", {{"window", "view"},
                                       {"color", "#E8EBF0"},
                                       {"tolerance", 90},
                                       {"rect", {left, top, 2 * kReach + 1, 2 * kReach + 1}}})["clusters"]
                    .empty();
    };
    const auto rectangleIsSeen = [&] { return brightAt(90, 50) && brightAt(150, 75); };
    EXPECT_FALSE(rectangleIsSeen());
    host.type("RECTANG\n50,50\n150,120\n");
    EXPECT_TRUE(HostProcess::waitUntil(rectangleIsSeen));
    host.type("U\n");
    EXPECT_TRUE(HostProcess::waitUntil([&] { return !rectangleIsSeen(); }));
}

TEST_F(HostWindows, MenuBarHasTheColoursOfTheTheme) {
    // At least a quarter of the pixels of a menu bar 20 pixels high, within the top 60 pixels of the window.
    constexpr int kWidth = 1000;
    constexpr int kUpperEdge = 60;
    constexpr int kFewestPixels = kWidth * 20 / 4;
    const auto barHas = [&](const char* color) {
        return !host.ask("findColor", {{"window", "frame"},
                                       {"rect", {0, 0, kWidth, kUpperEdge}},
                                       {"color", color},
                                       {"minPixels", kFewestPixels}})["clusters"]
                    .empty();
    };
    EXPECT_TRUE(HostProcess::waitUntil([&] { return barHas("#2B2F36"); }));
    host.type("COLORTHEME 1\n");
    EXPECT_TRUE(HostProcess::waitUntil([&] { return barHas("#F1F3F5"); }));
    EXPECT_FALSE(barHas("#2B2F36"));
}

TEST_F(HostWindows, ControlInterfaceSurvivesBadRequests) {
    EXPECT_EQ(host.call({{"cmd", "frobnicate"}})["ok"], false);
    EXPECT_EQ(host.call({{"cmd", "typeText"}})["ok"], false);
    EXPECT_EQ(host.call({{"cmd", "vars"}, {"set", "COLORTHEME"}, {"value", 9}})["error"],
              "the value is out of range");
    EXPECT_EQ(host.call(Json::array())["ok"], false);
    EXPECT_EQ(host.call({{"cmd", "focus"}, {"id", 17}})["id"], 17);
}

TEST_F(HostWindows, ViewHasTheFocusAtStartup) {
    EXPECT_EQ(host.ask("focus")["kind"], "view");
}

TEST_F(HostModules, ModuleCommandsRunAndReactorsAreNotified) {
    host.type("DPRINT\nDUMMY_PRINT\n_DUMMY_PRINT\n");
    host.idle();
    EXPECT_EQ(host.ask("commandLine")["lines"],
              (Json{"命令: DPRINT", "[start DUMMY_PRINT]", "你好, dummy", "[end DUMMY_PRINT]",
                    "命令: DUMMY_PRINT", "未知命令“DUMMY_PRINT”。按 F1 查看帮助。", "命令: _DUMMY_PRINT",
                    "[start DUMMY_PRINT]", "你好, dummy", "[end DUMMY_PRINT]"}));
}

TEST_F(HostModules, ReactorsAreNotifiedOfVariables) {
    host.type("COLORTHEME\n1\n");
    EXPECT_TRUE(host.waitForLine("[changed COLORTHEME 1]"));
    host.type("COLORTHEME\n5\n");
    EXPECT_TRUE(host.waitForLine("[refused COLORTHEME 1]"));
}

TEST_F(HostModules, NoHistoryCommandLeavesNoTrace) {
    host.type("_dummyHidden\n");
    host.idle();
    const Json line = host.ask("commandLine");
    EXPECT_EQ(line["lines"], (Json{"[start _dummyHidden]", "[end _dummyHidden]"}));
    EXPECT_TRUE(line["recall"].empty());
}

TEST_F(HostModules, SentStringsRunAfterTheCommandThatSentThem) {
    host.type("DSEND\n");
    ASSERT_TRUE(host.waitForPrompt("CIRCLE"));
    EXPECT_EQ(host.ask("commandLine")["active"], "CIRCLE");
}

TEST_F(HostModules, ThrowingCommandDoesNotAffectLaterCommands) {
    host.type("DTHROW\nDTHROWMFC\nDPRINT\n");
    EXPECT_TRUE(host.waitForLine("命令 DUMMY_THROW 失败。"));
    EXPECT_TRUE(host.waitForLine("命令 DUMMY_THROW_MFC 失败: "));
    EXPECT_NE(host.text().find("lost.txt"), std::string::npos) << host.text();
    EXPECT_TRUE(host.waitForLine("你好, dummy"));
}

TEST_F(HostModules, KeysAnswerAnOpenMessageBox) {
    host.type("DBOX\n");
    ASSERT_TRUE(boxIsOpen());
    const Json box = host.ask("messageBoxes")["boxes"][0];
    EXPECT_EQ(box["text"], "继续吗？");
    EXPECT_EQ(box["buttons"].size(), 2u);
    EXPECT_EQ(host.ask("commandLine")["quiescent"], false);
    // The box has the focus, so the keys answer it.
    host.ask("key", {{"key", "Return"}});
    EXPECT_TRUE(host.waitForLine("[answer 6]"));
    host.idle();
}

TEST_F(HostModules, UnloadWaitsUntilTheModulesMessageBoxIsAnswered) {
    host.type("DBOX\n");
    ASSERT_TRUE(boxIsOpen());
    std::future<Json> unloaded = std::async(std::launch::async, [other = host.connectAgain()] {
        return other->call({{"cmd", "arx"}, {"unload", "dummy.arx"}});
    });
    // The module stays loaded while its own code is blocked in the message box.
    host.ask("answerMessageBox", {{"button", "yes"}});
    EXPECT_TRUE(host.waitForLine("[answer 6]"));
    EXPECT_EQ(unloaded.get()["ok"], true);
    EXPECT_TRUE(host.waitForLine("[dummy unloaded]"));
}

TEST_F(HostModules, ScriptWaitsWhileAMessageBoxIsOpen) {
    const std::string script = testing::TempDir() + "zentri_host_box.scr";
    std::ofstream(script) << "DBOX\nCIRCLE\n0,0\n5\n";
    host.type("SCRIPT\n" + script + "\n");
    ASSERT_TRUE(boxIsOpen());
    EXPECT_TRUE(entities().empty());
    host.ask("answerMessageBox", {{"button", "no"}});
    host.idle();
    EXPECT_EQ(entities().size(), 1u);
    std::filesystem::remove(script);
}

TEST_F(HostModules, MessageBoxesAreAnsweredByButtonName) {
    host.type("DBOX\n");
    ASSERT_TRUE(boxIsOpen());
    EXPECT_EQ(host.call({{"cmd", "answerMessageBox"}, {"button", "cancel"}})["ok"], false);
    host.ask("answerMessageBox", {{"button", "no"}});
    EXPECT_TRUE(host.waitForLine("[answer 7]"));
    EXPECT_EQ(host.call({{"cmd", "answerMessageBox"}, {"button", "no"}})["error"], "no message box is open");
}

TEST_F(HostModules, AModuleThatPrintsOnAnotherThreadAbortsTheHost) {
    // The reply may not come any more.
    EXPECT_THROW(
        {
            host.type("DTHREAD\n");
            host.idle();
        },
        std::exception);
    EXPECT_NE(host.waitForExit(), 0);
    EXPECT_NE(host.errors().find("acutPrintf called on a thread other than the UI thread"),
              std::string::npos);
}

TEST_F(HostModules, LoadingAndShowingAPaletteLeaveTheKeyboardToTheCommandLine) {
    EXPECT_EQ(host.ask("focus")["kind"], "view");
    host.type("DPALETTE\n");
    ASSERT_TRUE(HostProcess::waitUntil([&] { return host.window("paletteSet")["visible"] == true; }));
    EXPECT_EQ(host.ask("focus")["kind"], "view");
    host.type("C\n");
    EXPECT_TRUE(host.waitForPrompt("CIRCLE"));
}

TEST_F(HostModules, ModuleCanBeUnloadedAndLoadedAgain) {
    EXPECT_EQ(host.ask("arx")["modules"].size(), 1u);
    EXPECT_EQ(host.call({{"cmd", "arx"}, {"load", ZENTRI_DUMMY_MODULE}})["ok"], false);
    host.ask("arx", {{"unload", "dummy.arx"}});
    EXPECT_TRUE(host.ask("arx")["modules"].empty());
    EXPECT_TRUE(host.window("paletteSet").is_null());
    host.type("DPRINT\n");
    EXPECT_TRUE(host.waitForLine("未知命令“DPRINT”"));
    host.type(std::string("ARX\nL\n") + ZENTRI_DUMMY_MODULE + "\nDPRINT\n");
    EXPECT_TRUE(host.waitForLine("你好, dummy"));
}

TEST_F(HostModules, PaletteDocksBesideTheViewAndReceivesKeys) {
    const int wide = host.window("view")["rect"]["width"];
    EXPECT_EQ(host.window("paletteSet")["visible"], false);
    host.type("DPALETTE\n");
    ASSERT_TRUE(HostProcess::waitUntil([&] { return host.window("paletteSet")["visible"] == true; }));
    EXPECT_LT(host.window("view")["rect"]["width"].get<int>(), wide);
    host.type("DFOCUS\n");
    host.idle();
    ASSERT_EQ(host.ask("focus")["kind"], "palette");
    host.type("C");
    EXPECT_TRUE(host.waitForLine("[palette char 67]"));
    EXPECT_EQ(host.ask("commandLine")["input"], "");
    // A click on the drawing returns the keyboard to the command line.
    host.ask("clickWindow", {{"window", "view"}});
    host.type("C\n");
    EXPECT_TRUE(host.waitForPrompt("CIRCLE"));
}

TEST_F(HostModules, TheMouseOverTheDrawingTakesTheFocusFromAPaletteThatYieldsIt) {
    const Json set = [this] {
        host.type("DPALETTE\n");
        host.idle();
        return host.window("paletteSet")["rect"];
    }();
    const Json view = host.window("view")["rect"];
    const int y = set["y"].get<int>() + 200;
    const auto moveTo = [&](const Json& rect, int offset) {
        host.ask("move", {{"x", rect["x"].get<int>() + offset}, {"y", y}});
        host.idle();
    };
    // What the dummy module's palette answers to WM_ACAD_KEEPFOCUS and to CanFrameworkTakeFocus.
    const struct {
        const char* answers;
        const char* focus;
    } cases[] = {
        {"DKEEP0\nDYIELD1\n", "view"}, {"DKEEP0\nDYIELD0\n", "palette"}, {"DKEEP1\nDYIELD1\n", "palette"}};
    for (const auto& each : cases) {
        host.ask("clickWindow", {{"window", "commandLine"}});
        host.type(std::string(each.answers) + "DFOCUS\n");
        moveTo(set, 50);
        ASSERT_EQ(host.ask("focus")["kind"], "palette") << each.answers;
        moveTo(view, 50);
        EXPECT_EQ(host.ask("focus")["kind"], each.focus) << each.answers;
    }
}

TEST_F(HostModules, CaretBlinksOnlyWhileTheCommandLineReceivesKeys) {
    host.type("DPALETTE\n");
    EXPECT_TRUE(HostProcess::waitUntil([&] { return caretIsSeen(); }));
    EXPECT_TRUE(HostProcess::waitUntil([&] { return !caretIsSeen(); }));
    EXPECT_TRUE(HostProcess::waitUntil([&] { return caretIsSeen(); }));
    host.type("DFOCUS\n");
    host.idle();
    ASSERT_EQ(host.ask("focus")["kind"], "palette");
    EXPECT_TRUE(HostProcess::waitUntil([&] { return caretStaysAway(); }));
    host.ask("clickWindow", {{"window", "commandLine"}});
    EXPECT_TRUE(HostProcess::waitUntil([&] { return caretIsSeen(); }));
}

TEST(HostFocus, AFocusThatAModuleTakesWhileItIsLoadedIsNotPutBack) {
    setEnvironment("ZR_DUMMY_TAKES_FOCUS", "1");
    HostProcess host({"--no-state"});
    // Once the frame is active: its activation moves the focus too.
    host.ask("clickWindow", {{"window", "commandLine"}});
    ASSERT_TRUE(HostProcess::waitUntil([&] { return host.ask("focus")["kind"] != "none"; }));
    host.ask("arx", {{"load", ZENTRI_DUMMY_MODULE}});
    EXPECT_EQ(host.ask("focus")["kind"], "palette");
}

TEST(HostDocking, WidthIsRestored) {
    const std::string state = testing::TempDir() + "zentri_host_docking.json";
    std::filesystem::remove(state);
    int width = 0;
    {
        HostProcess host({"--state", state, "--geometry", "1000x700", "--arx", ZENTRI_DUMMY_MODULE});
        host.type("DPALETTE\n");
        ASSERT_TRUE(HostProcess::waitUntil([&] { return host.window("paletteSet")["visible"] == true; }));
        const Json set = host.window("paletteSet")["rect"];
        const int edge = set["x"].get<int>() + set["width"].get<int>() + 2;
        const int y = set["y"].get<int>() + 200;
        host.ask("drag", {{"from", {edge, y}}, {"to", {edge + 60, y}}});
        ASSERT_TRUE(HostProcess::waitUntil([&] {
            return host.window("paletteSet")["rect"]["width"].get<int>() > set["width"].get<int>() + 40;
        }));
        width = host.window("paletteSet")["rect"]["width"];
        host.type("QUIT\n");
        ASSERT_EQ(host.waitForExit(), 0);
    }
    HostProcess host({"--state", state, "--arx", ZENTRI_DUMMY_MODULE});
    host.type("DPALETTE\n");
    ASSERT_TRUE(HostProcess::waitUntil([&] { return host.window("paletteSet")["visible"] == true; }));
    EXPECT_EQ(host.window("paletteSet")["rect"]["width"], width);
    std::filesystem::remove(state);
}
