// zentri-host as a process: options, exit codes, startup and shutdown.

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/sim/cad/HostProcess.h"

namespace {

std::string tempFile(const std::string& name) {
    return testing::TempDir() + name;
}

}  // namespace

TEST(HostProgram, BadOptionPrintsOneLineAndExitsWith2) {
    HostProcess host({"--frobnicate"}, false);
    EXPECT_EQ(host.waitForExit(), 2);
    EXPECT_EQ(host.errors(), "zentri-host: unknown option: --frobnicate (--help lists the options)\n");
    EXPECT_EQ(host.output(), "");
}

TEST(HostProgram, HelpListsTheOptions) {
    HostProcess host({"--help"}, false);
    EXPECT_EQ(host.waitForExit(), 0);
    EXPECT_NE(host.output().find("--arx FILE"), std::string::npos);
}

TEST(HostProgram, MissingFilesPrintOneLineAndExitWith2) {
    HostProcess module({"--no-state", "--arx", "/no/such.arx"}, false);
    EXPECT_EQ(module.waitForExit(), 2);
    EXPECT_EQ(module.errors(), "zentri-host: cannot open module: /no/such.arx\n");
    HostProcess script({"--no-state", "--script", "/no/such.scr"}, false);
    EXPECT_EQ(script.waitForExit(), 2);
    EXPECT_EQ(script.errors(), "zentri-host: cannot open script: /no/such.scr\n");
    HostProcess log({"--no-state", "--log", "/no/such/folder/log"}, false);
    EXPECT_EQ(log.waitForExit(), 2);
    EXPECT_EQ(log.errors(), "zentri-host: cannot open log file: /no/such/folder/log\n");
}

TEST(HostProgram, BusyControlPortPrintsOneLineAndExitsWith2) {
    HostProcess first({"--no-state"});
    const std::string announced = first.output();
    const std::string port =
        announced.substr(announced.rfind(':') + 1, announced.rfind('\n') - announced.rfind(':') - 1);
    HostProcess second({"--no-state", "--control", port}, false);
    EXPECT_EQ(second.waitForExit(), 2);
    EXPECT_EQ(second.errors().find("zentri-host: cannot listen on control port " + port), 0u)
        << second.errors();
}

TEST(HostProgram, QuitTypedAtTheCommandLineExitsWith0) {
    HostProcess host({"--no-state"});
    host.type("QUIT\n");
    EXPECT_EQ(host.waitForExit(), 0) << host.errors();
}

TEST(HostProgram, QuitThroughTheControlInterfaceExitsWith0) {
    HostProcess host({"--no-state"});
    host.ask("quit");
    EXPECT_EQ(host.waitForExit(), 0) << host.errors();
}

TEST(HostProgram, EchoPrintsCommandLineTextToStandardOutput) {
    HostProcess host({"--no-state", "--echo", "--arx", ZENTRI_DUMMY_MODULE});
    ASSERT_TRUE(host.waitForLine("[dummy loaded]"));
    host.type("DPRINT\nQUIT\n");
    EXPECT_EQ(host.waitForExit(), 0);
    EXPECT_NE(host.output().find("\n命令: DPRINT\n"), std::string::npos) << host.output();
    EXPECT_NE(host.output().find("\n你好, dummy\n"), std::string::npos) << host.output();
}

TEST(HostProgram, LogFileReceivesCommandLineText) {
    const std::string log = tempFile("zentri_host_test.log");
    std::filesystem::remove(log);
    HostProcess host({"--no-state", "--log", log});
    host.type("REDRAW\nQUIT\n");
    EXPECT_EQ(host.waitForExit(), 0);
    std::ifstream stream(log);
    std::string line;
    std::getline(stream, line);
    stream.close();
    EXPECT_EQ(line, "命令: REDRAW");
    std::filesystem::remove(log);
}

/// A script that calls itself and so draws circles forever; the program must stay responsive.
class EndlessScript : public testing::Test {
protected:
    EndlessScript() {
        std::ofstream(m_script) << "CIRCLE 0,0 10\nSCRIPT " << m_script << "\n";
        host = std::make_unique<HostProcess>(
            std::vector<std::string>{"--no-state", "--theme", "dark", "--script", m_script});
        EXPECT_TRUE(HostProcess::waitUntil([this] { return circles() > 100; }));
    }
    ~EndlessScript() override {
        host.reset();
        std::filesystem::remove(m_script);
    }

    size_t circles() { return host->ask("drawing")["entities"].size(); }

    const std::string m_script = tempFile("zentri_host_endless.scr");
    std::unique_ptr<HostProcess> host;
};

TEST_F(EndlessScript, IsStoppedByEscape) {
    host->ask("key", {{"key", "Escape"}, {"real", true}});
    host->idle();
    const size_t drawn = circles();
    host->type("CIRCLE 50,50 5\n");
    host->idle();
    EXPECT_EQ(circles(), drawn + 1);
}

TEST_F(EndlessScript, IsPaintedWhileItRuns) {
    EXPECT_TRUE(HostProcess::waitUntil([&] {
        return host->ask("findColor", {{"color", "#E8EBF0"}, {"window", "view"}})["clusters"].size() > 0;
    }));
}

TEST(HostProgram, ScriptRunsAfterTheModulesAreLoaded) {
    const std::string script = tempFile("zentri_host_test.scr");
    // The blank line repeats CIRCLE, which the next line cancels.
    std::ofstream(script) << "; a circle and a module's command\nCIRCLE\n100,100\n50\n\n\x03"
                             "DPRINT\n"
                             "DELAY\n50\nLINE\n0,0\n10,10\n\n";
    HostProcess host({"--no-state", "--arx", ZENTRI_DUMMY_MODULE, "--script", script});
    ASSERT_TRUE(host.waitForLine("你好, dummy"));
    host.idle();
    EXPECT_EQ(host.ask("drawing")["entities"].size(), 2u);
    std::filesystem::remove(script);
}

TEST(HostProgram, GeometryAndThemeAreTakenFromTheOptions) {
    HostProcess host({"--no-state", "--geometry", "700x500", "--theme", "light"});
    EXPECT_EQ(host.ask("vars", {{"get", "COLORTHEME"}})["value"], 1);
    const auto rect = host.window("frame")["rect"];
    EXPECT_EQ(rect["width"], 700);
    EXPECT_EQ(rect["height"], 500);
}

TEST(HostProgram, PlacementAndThemeAreRestored) {
    const std::string state = tempFile("zentri_host_place.json");
    std::filesystem::remove(state);
    {
        HostProcess host({"--state", state, "--geometry", "720x540"});
        host.type("COLORTHEME\n1\nQUIT\n");
        EXPECT_EQ(host.waitForExit(), 0);
    }
    HostProcess host({"--state", state});
    const auto rect = host.window("frame")["rect"];
    EXPECT_EQ(rect["width"], 720);
    EXPECT_EQ(rect["height"], 540);
    EXPECT_EQ(host.ask("vars", {{"get", "COLORTHEME"}})["value"], 1);
    std::filesystem::remove(state);
}

TEST(HostProgram, TokenComesFromOptionOrEnvironment) {
    {
        HostProcess host({"--no-state", "--arx", ZENTRI_DUMMY_MODULE, "--token", "abc"});
        host.type("DACCOUNT\n");
        EXPECT_TRUE(host.waitForLine("[token 3 1 3 abc]"));
    }
    setEnvironment("ZR_ZENTRI_TOKEN", "from-env");
    HostProcess host({"--no-state", "--arx", ZENTRI_DUMMY_MODULE});
    setEnvironment("ZR_ZENTRI_TOKEN", nullptr);
    host.type("DACCOUNT\n");
    EXPECT_TRUE(host.waitForLine("[token 8 1 8 from-env]"));
}

TEST(HostProgram, SignInAsksTheUserAndMayBeDeclined) {
    HostProcess host({"--no-state", "--arx", ZENTRI_DUMMY_MODULE});
    host.type("DACCOUNT\n");
    ASSERT_TRUE(HostProcess::waitUntil([&] { return !host.ask("messageBoxes")["boxes"].empty(); }));
    host.ask("answerMessageBox", {{"button", "no"}});
    EXPECT_TRUE(host.waitForLine("[token 0 0 0 ]"));
    host.type("DACCOUNT\n");
    ASSERT_TRUE(HostProcess::waitUntil([&] { return !host.ask("messageBoxes")["boxes"].empty(); }));
    host.ask("answerMessageBox", {{"button", "yes"}});
    EXPECT_TRUE(host.waitForLine("[token 0 1 4 demo]"));
}

TEST(HostProgram, NoSignInOptionRejectsWithoutAsking) {
    HostProcess host({"--no-state", "--no-sign-in", "--arx", ZENTRI_DUMMY_MODULE});
    host.type("DACCOUNT\n");
    EXPECT_TRUE(host.waitForLine("[token 0 0 0 ]"));
}

#ifndef _WIN32

// Windows always has a desktop, and processes cannot send signals to each other.

TEST_F(EndlessScript, DoesNotKeepTheProgramFromEnding) {
    kill(host->pid(), SIGINT);
    EXPECT_EQ(host->waitForExit(), 0);
}

TEST(HostProgram, MissingDisplayPrintsOneLineAndExitsWith2) {
    const char* const display = std::getenv("DISPLAY");
    const std::string kept = display == nullptr ? "" : display;
    setEnvironment("DISPLAY", ":65000");
    HostProcess host({"--no-state"}, false);
    setEnvironment("DISPLAY", kept.c_str());
    EXPECT_EQ(host.waitForExit(), 2);
    const std::string errors = host.errors();
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
}

TEST(HostProgram, SignalsUnloadModulesAndExitCleanly) {
    for (const int signal : {SIGINT, SIGTERM}) {
        HostProcess host({"--no-state", "--echo", "--arx", ZENTRI_DUMMY_MODULE});
        ASSERT_TRUE(host.waitForLine("[dummy loaded]"));
        kill(host.pid(), signal);
        EXPECT_EQ(host.waitForExit(), 0) << host.errors();
        EXPECT_NE(host.output().find("[dummy unloaded]"), std::string::npos) << host.output();
    }
}

TEST(HostProgram, SignalDuringAMessageBoxExitsCleanly) {
    HostProcess host({"--no-state", "--arx", ZENTRI_DUMMY_MODULE});
    host.type("DBOX\n");
    ASSERT_TRUE(HostProcess::waitUntil([&] { return !host.ask("messageBoxes")["boxes"].empty(); }));
    kill(host.pid(), SIGTERM);
    EXPECT_EQ(host.waitForExit(), 0) << host.errors();
}

#endif
