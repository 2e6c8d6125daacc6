// The real module, host and service together, in situations that involve more than one of them: keyboard
// focus, nested message loops, and one of them ending while an answer streams in.

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/sim/cad/HostProcess.h"
#include "tests/support/service/ServiceProcess.h"

namespace {

using Json = HostProcess::Json;

constexpr const char* kToken = "anna";
constexpr const char* kAnswerColor = "#333333";
constexpr const char* kQuestionBubbleColor = "#E5F6FE";
constexpr const char* kInputFrameColor = "#3C88F0";
constexpr const char* kDialogSendColor = "#4D6BFE";
constexpr int kSmallestBubble = 35;
constexpr int kSmallestButton = 400;
// Offset from the lower left corner of a question's bubble to the center of its edit icon.
constexpr int kEditIconRight = 47;
constexpr int kEditIconBelow = 19;
// The input box: the thickness of its frame, the height of its first row, and the size of its caret.
constexpr int kFrame = 3;
constexpr int kInputRow = 40;
constexpr int kCaretWidth = 2;
constexpr int kCaretHeight = 14;
// From the panel's upper right corner to the center of its close button, both ways.
constexpr int kCloseButtonInset = 13;

int area(const Json& rect) {
    return rect["width"].get<int>() * rect["height"].get<int>();
}

/// A service that streams its answers slowly, and a host with the panel open.
class EndToEnd : public testing::Test {
protected:
    EndToEnd() {
        setEnvironment("ZR_ZENTRI_SERVICE", service.address().c_str());
        setEnvironment("ZR_ZENTRI_PROBE", ("http://" + service.address()).c_str());
        setEnvironment("ZR_SIM_FONT", ZENTRI_FONT);
        host = std::make_unique<HostProcess>(std::vector<std::string>{"--no-state", "--geometry", "1440x900",
                                                                      "--theme", "light", "--token", kToken,
                                                                      "--arx", ZENTRI_MODULE});
        openPanel();
    }

    void moveOverDrawing() {
        const Json view = host->window("view")["rect"];
        for (const int offset : {100, 120}) {
            host->ask("move", {{"x", view["x"].get<int>() + offset}, {"y", view["y"].get<int>() + 100}});
        }
        host->idle();
    }

    void openPanel() {
        host->ask("clickWindow", {{"window", "commandLine"}});
        host->ask("clearHistory");
        host->type("KQ_AICHAT\n");
        EXPECT_TRUE(HostProcess::waitUntil([&] {
            const Json palette = host->window("palette");
            return !palette.is_null() && palette["visible"] == true;
        }));
        EXPECT_TRUE(host->waitForLine("Zentri:用户数据初始化完成"));
    }

    Json found(const std::string& color, Json arguments = Json::object()) {
        arguments["color"] = color;
        return host->ask("findColor", std::move(arguments))["clusters"];
    }

    void click(int x, int y) { host->ask("click", {{"x", x}, {"y", y}}); }

    Json inputBox() {
        const Json frames = found(kInputFrameColor, {{"window", "palette"}, {"tolerance", 24}});
        EXPECT_FALSE(frames.empty());
        return *std::max_element(frames.begin(), frames.end(),
                                 [](const Json& a, const Json& b) { return area(a) < area(b); });
    }

    void clickInputBox() {
        const Json box = inputBox();
        click(box["x"].get<int>() + box["width"].get<int>() / 2,
              box["y"].get<int>() + box["height"].get<int>() / 2);
    }

    /// The black strokes (text and caret) in the first row of the input box.
    Json inputStrokes() {
        const Json box = inputBox();
        const Json palette = host->window("palette")["rect"];
        const Json inside = {box["x"].get<int>() - palette["x"].get<int>() + kFrame,
                             box["y"].get<int>() - palette["y"].get<int>() + kFrame, box["width"], kInputRow};
        return found("#000000", {{"window", "palette"}, {"rect", inside}, {"tolerance", 60}});
    }

    bool caretIsSeen() {
        const Json strokes = inputStrokes();
        return std::any_of(strokes.begin(), strokes.end(), [](const Json& stroke) {
            return stroke["width"] <= kCaretWidth && stroke["height"] >= kCaretHeight;
        });
    }

    /// Whether the input box shows text besides the caret.
    bool textIsSeen() {
        const Json strokes = inputStrokes();
        return std::count_if(strokes.begin(), strokes.end(),
                             [](const Json& stroke) { return stroke["height"] < kCaretHeight; }) > 1;
    }

    /// Whether the caret is invisible for longer than a blink.
    bool caretStaysAway() {
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(1500);
        while (std::chrono::steady_clock::now() < end) {
            if (caretIsSeen()) {
                return false;
            }
        }
        return true;
    }

    /// Types the question into the panel and waits until its answer streams in.
    void askQuestion(const std::string& question) {
        clickInputBox();
        const Json before = answer();
        host->type(question + "\n");
        ASSERT_TRUE(HostProcess::waitUntil([&] { return answer().size() > before.size(); }));
        ASSERT_TRUE(answerGoesOn());
    }

    /// The visible text of the answers in the panel, as the rectangles of its strokes.
    Json answer() { return found(kAnswerColor, {{"window", "palette"}, {"tolerance", 40}}); }

    /// Whether the visible answer keeps growing.
    bool answerGoesOn() {
        for (int i = 0; i < 3; ++i) {
            const Json before = answer();
            if (!HostProcess::waitUntil([&] { return answer() != before; })) {
                return false;
            }
        }
        return true;
    }

    Json messageBoxes() { return host->ask("messageBoxes")["boxes"]; }
    bool boxIsOpen() {
        return HostProcess::waitUntil([&] { return !messageBoxes().empty(); });
    }

    /// The user's sessions, requested from the service.
    Json sessions() {
        const cad::net::Socket socket = cad::net::connectToLoopback(service.port());
        cad::net::sendAll(socket, std::string("POST /zr/ai/session/user HTTP/1.1\r\nHost: 127.0.0.1\r\n"
                                              "Content-Type: application/json\r\nContent-Length: 2\r\n"
                                              "Connection: close\r\nAuthorization: ") +
                                      kToken + "\r\n\r\n{}");
        std::string reply;
        char chunk[4096];
        while (const size_t count = cad::net::receive(socket, chunk, sizeof chunk)) {
            reply.append(chunk, count);
        }
        cad::net::close(socket);
        return Json::parse(reply.substr(reply.find("\r\n\r\n"))).at("data");
    }

    std::string activeCommand() { return host->ask("commandLine")["active"].dump(); }

    ServiceProcess service{{"--delay", "60", "--piece", "2"}};
    std::unique_ptr<HostProcess> host;
};

}  // namespace

TEST_F(EndToEnd, CaretBlinksInTheInputBoxOnlyWhileThePanelHasTheKeyboard) {
    EXPECT_TRUE(caretStaysAway());
    for (const char* typed : {"", "abc"}) {
        clickInputBox();
        host->type(typed);
        EXPECT_TRUE(HostProcess::waitUntil([&] { return caretIsSeen(); })) << typed;
        EXPECT_TRUE(HostProcess::waitUntil([&] { return !caretIsSeen(); })) << "it blinks: " << typed;
        host->ask("clickWindow", {{"window", "commandLine"}});
        EXPECT_TRUE(HostProcess::waitUntil([&] { return caretStaysAway(); })) << typed;
        // Keys now reach the command line, which shows its own caret.
        host->type("LINE\n");
        EXPECT_TRUE(host->waitForPrompt("LINE")) << typed;
        host->ask("key", {{"key", "Escape"}});
    }
}

TEST_F(EndToEnd, PanelHasTheKeyboardUntilTheCommandLineIsClickedButAltOpensMenus) {
    const auto press = [&](const std::string& characters) {
        for (const char character : characters) {
            host->ask("key",
                      {{"key", character == ' ' ? "Space" : std::string(1, character)}, {"real", true}});
        }
    };
    const std::string noCommand = activeCommand();
    clickInputBox();
    ASSERT_EQ(host->ask("focus")["kind"], "palette");
    ASSERT_FALSE(textIsSeen());
    press("line ");
    EXPECT_TRUE(HostProcess::waitUntil([&] { return textIsSeen(); }));
    host->idle();
    EXPECT_EQ(host->ask("commandLine")["input"], "");
    EXPECT_EQ(activeCommand(), noCommand);

    host->ask("key", {{"key", "d"}, {"alt", true}, {"real", true}});
    press("c");
    EXPECT_TRUE(host->waitForPrompt("CIRCLE"));
    EXPECT_EQ(host->ask("focus")["kind"], "palette");

    host->ask("clickWindow", {{"window", "commandLine"}});
    host->ask("key", {{"key", "Escape"}, {"real", true}});
    EXPECT_TRUE(HostProcess::waitUntil([&] { return activeCommand() == noCommand; }));
    press("line ");
    EXPECT_TRUE(host->waitForPrompt("LINE 指定第一个点"));
}

TEST_F(EndToEnd, HiddenCommandRunsWhenTypedAndLeavesNoTrace) {
    host->ask("clickWindow", {{"window", "commandLine"}});
    host->idle();
    const Json before = host->ask("commandLine");
    host->type("_refreshChatView\n");
    host->idle();
    const Json after = host->ask("commandLine");
    EXPECT_EQ(after["lines"], before["lines"]);
    EXPECT_EQ(after["recall"], before["recall"]);
    EXPECT_EQ(after["input"], "");
}

TEST_F(EndToEnd, TypingInThePanelGoesOnWhileTheMouseIsOverTheDrawing) {
    clickInputBox();
    moveOverDrawing();
    host->type("line ");
    EXPECT_TRUE(HostProcess::waitUntil([&] { return textIsSeen(); }));
    EXPECT_EQ(host->ask("commandLine")["input"], "");
    // Elsewhere in the panel nothing is typed: the mouse over the drawing gives the keyboard back.
    const Json palette = host->window("palette")["rect"];
    click(palette["x"].get<int>() + palette["width"].get<int>() / 2,
          palette["y"].get<int>() + palette["height"].get<int>() / 2);
    moveOverDrawing();
    EXPECT_EQ(host->ask("focus")["kind"], "view");
    host->type("CIRCLE\n");
    EXPECT_TRUE(host->waitForPrompt("CIRCLE"));
}

TEST_F(EndToEnd, ClosingThePanelWhileTypingInItGivesTheKeyboardToTheCommandLine) {
    clickInputBox();
    const Json set = host->window("paletteSet")["rect"];
    click(set["x"].get<int>() + set["width"].get<int>() - kCloseButtonInset,
          set["y"].get<int>() + kCloseButtonInset);
    ASSERT_TRUE(HostProcess::waitUntil([&] { return host->window("paletteSet")["visible"] == false; }));
    host->type("CIRCLE\n");
    EXPECT_TRUE(host->waitForPrompt("CIRCLE"));
}

TEST(PlainLoad, LeavesTheKeyboardToTheCommandLine) {
    HostProcess host({"--no-state", "--arx", ZENTRI_MODULE});
    ASSERT_TRUE(HostProcess::waitUntil([&] { return !host.ask("arx")["modules"].empty(); }));
    host.idle();
    EXPECT_EQ(host.ask("focus")["kind"], "view");
    host.type("CIRCLE\n");
    EXPECT_TRUE(host.waitForPrompt("CIRCLE"));
}

TEST_F(EndToEnd, AnswerKeepsStreamingBehindAMessageBox) {
    host->ask("arx", {{"load", ZENTRI_DUMMY_MODULE}});
    askQuestion("怎么画圆");
    host->ask("clickWindow", {{"window", "commandLine"}});
    host->type("DBOX\n");
    ASSERT_TRUE(boxIsOpen());
    EXPECT_TRUE(answerGoesOn());
    host->ask("answerMessageBox", {{"button", "yes"}});
    EXPECT_TRUE(host->waitForLine("[answer 6]"));
}

TEST_F(EndToEnd, AnswerKeepsStreamingBehindAnOpenMenu) {
    askQuestion("怎么画圆");
    host->ask("clickWindow", {{"window", "commandLine"}});
    host->ask("key", {{"key", "d"}, {"alt", true}, {"real", true}});
    EXPECT_TRUE(answerGoesOn());
    // The menu has stayed open all the time.
    host->ask("key", {{"key", "c"}, {"real", true}});
    EXPECT_TRUE(host->waitForPrompt("CIRCLE"));
}

TEST_F(EndToEnd, AnswerKeepsStreamingBehindTheEditDialog) {
    askQuestion("怎么画圆");
    const Json bubbles = found(kQuestionBubbleColor,
                               {{"window", "palette"}, {"minPixels", kSmallestBubble * kSmallestBubble}});
    ASSERT_FALSE(bubbles.empty());
    const Json& bubble = bubbles[0];
    click(bubble["x"].get<int>() + kEditIconRight,
          bubble["y"].get<int>() + bubble["height"].get<int>() + kEditIconBelow);
    const auto dialogIsOpen = [&] {
        return !found(kDialogSendColor, {{"minPixels", kSmallestButton}}).empty();
    };
    ASSERT_TRUE(HostProcess::waitUntil(dialogIsOpen));
    EXPECT_TRUE(answerGoesOn());
    EXPECT_TRUE(dialogIsOpen());
    host->ask("key", {{"key", "Escape"}, {"real", true}});
    EXPECT_TRUE(HostProcess::waitUntil([&] { return !dialogIsOpen(); }));
}

TEST_F(EndToEnd, ServiceKilledDuringAnAnswerIsReportedAndTheHostContinues) {
    askQuestion("怎么画圆");
    service.kill();
    ASSERT_TRUE(boxIsOpen());
    EXPECT_EQ(messageBoxes()[0]["text"], "Zentri 通信出错！");
    host->ask("answerMessageBox", {{"button", "ok"}});
    host->ask("clickWindow", {{"window", "commandLine"}});
    host->type("CIRCLE 0,0 5\n");
    host->idle();
    EXPECT_EQ(host->ask("drawing")["entities"].size(), 1U);
    host->type("QUIT\n");
    EXPECT_EQ(host->waitForExit(), 0);
}

TEST_F(EndToEnd, ModuleUnloadedDuringAnAnswerCanBeLoadedAgain) {
    askQuestion("怎么画圆");
    const auto begin = std::chrono::steady_clock::now();
    host->ask("arx", {{"unload", "ZR_Zentri.arx"}});
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    EXPECT_TRUE(host->window("palette").is_null());
    host->ask("arx", {{"load", ZENTRI_MODULE}});
    openPanel();
    askQuestion("怎么画直线");
    // Both questions are in the user's history, although the first answer was interrupted.
    EXPECT_TRUE(HostProcess::waitUntil([&] { return sessions().size() == 2U; }));
    host->type("QUIT\n");
}

TEST_F(EndToEnd, HostQuitsCleanlyAndQuicklyDuringAnAnswer) {
    askQuestion("怎么画圆");
    host->ask("quit");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(host->waitForExit(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    EXPECT_EQ(host->errors().find("QThread: Destroyed"), std::string::npos) << host->errors();
}
