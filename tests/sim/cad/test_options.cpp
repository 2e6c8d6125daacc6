#include "sim/cad/core/Options.h"

#include <gtest/gtest.h>

using cad::Options;
using cad::parseOptions;

namespace {

std::optional<Options> parse(const std::vector<std::string>& arguments) {
    std::string error;
    return parseOptions(arguments, error);
}

std::string errorOf(const std::vector<std::string>& arguments) {
    std::string error;
    EXPECT_FALSE(parseOptions(arguments, error));
    return error;
}

}  // namespace

TEST(HostOptions, NoArgumentsGiveTheDefaults) {
    const auto options = parse({});
    ASSERT_TRUE(options);
    EXPECT_TRUE(options->modules.empty());
    EXPECT_FALSE(options->controlPort);
    EXPECT_FALSE(options->theme);
}

TEST(HostOptions, ReadsEveryOption) {
    const auto options = parse({"--arx", "a.arx", "--arx=b.arx", "--script", "s.scr", "--token", "t",
                                "--no-sign-in", "--state", "f.json", "--geometry", "1280x800", "--theme",
                                "light", "--echo", "--log", "l.txt", "--control", "0"});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->modules, (std::vector<std::string>{"a.arx", "b.arx"}));
    EXPECT_EQ(options->script, "s.scr");
    EXPECT_EQ(options->token, "t");
    EXPECT_TRUE(options->noSignIn);
    EXPECT_EQ(options->stateFile, "f.json");
    EXPECT_EQ(options->width, 1280);
    EXPECT_EQ(options->height, 800);
    EXPECT_EQ(options->theme, 1);
    EXPECT_TRUE(options->echo);
    EXPECT_EQ(options->logFile, "l.txt");
    EXPECT_EQ(options->controlPort, 0);
}

TEST(HostOptions, ReportsAnErrorInOneLine) {
    EXPECT_EQ(errorOf({"--frobnicate"}), "unknown option: --frobnicate");
    EXPECT_EQ(errorOf({"file.dwg"}), "unexpected argument: file.dwg");
    EXPECT_EQ(errorOf({"--arx"}), "--arx needs a value: FILE");
    EXPECT_EQ(errorOf({"--echo=1"}), "--echo takes no value");
    EXPECT_EQ(errorOf({"--theme", "blue"}), "bad value for --theme: \"blue\" (expected light|dark)");
    EXPECT_EQ(errorOf({"--control", "65536"}), "bad value for --control: \"65536\" (expected PORT)");
    EXPECT_EQ(errorOf({"--control", "-1"}), "bad value for --control: \"-1\" (expected PORT)");
    EXPECT_EQ(errorOf({"--geometry", "100x100"}), "bad value for --geometry: \"100x100\" (expected WxH)");
    EXPECT_EQ(errorOf({"--geometry", "wide"}), "bad value for --geometry: \"wide\" (expected WxH)");
    EXPECT_EQ(errorOf({"--token="}), "bad value for --token: \"\" (expected T)");
}

TEST(HostOptions, HelpNamesEveryOption) {
    const std::string help = cad::optionsHelp();
    for (const char* name : {"--arx FILE", "--script FILE", "--token T", "--no-sign-in", "--state FILE",
                             "--no-state", "--geometry WxH", "--theme light|dark", "--echo", "--log FILE",
                             "--control PORT", "--help", "--version", "ZR_ZENTRI_TOKEN"}) {
        EXPECT_NE(help.find(name), std::string::npos) << name;
    }
}
