#include "sim/cad/core/HostState.h"

#include <gtest/gtest.h>

#include <filesystem>

using cad::DockSide;
using cad::HostState;

TEST(HostState, RoundTripsThroughItsFile) {
    const std::string folder = testing::TempDir() + "zentri_host_state";
    const std::string path = folder + "/deep/state.json";
    HostState state;
    state.window = HostState::Window{10, -20, 1280, 800, true};
    state.theme = 1;
    state.palettes["朔禾CAD Zentri"] = {DockSide::Right, 420};
    ASSERT_TRUE(state.save(path));

    const HostState read = HostState::load(path);
    ASSERT_TRUE(read.window);
    EXPECT_EQ(read.window->y, -20);
    EXPECT_EQ(read.window->width, 1280);
    EXPECT_TRUE(read.window->maximized);
    EXPECT_EQ(read.theme, 1);
    ASSERT_EQ(read.palettes.count("朔禾CAD Zentri"), 1u);
    EXPECT_EQ(read.palettes.at("朔禾CAD Zentri").side, DockSide::Right);
    EXPECT_EQ(read.palettes.at("朔禾CAD Zentri").width, 420);
    std::filesystem::remove_all(folder);
}

TEST(HostState, MissingFileGivesAnEmptyState) {
    const HostState state = HostState::load("/no/such/state.json");
    EXPECT_FALSE(state.window);
    EXPECT_FALSE(state.theme);
    EXPECT_TRUE(state.palettes.empty());
}

TEST(HostState, InvalidPartsAreTreatedAsAbsent) {
    for (const char* text : {"", "[]", "{", "{\"window\":[]}", "{\"window\":{\"width\":\"x\",\"height\":5}}",
                             "{\"window\":{\"width\":-5,\"height\":5}}", "{\"theme\":7}", "{\"theme\":\"1\"}",
                             "{\"palettes\":{\"a\":3,\"b\":{\"width\":0},\"c\":{\"width\":1e99}}}"}) {
        const HostState state = HostState::fromJson(text);
        EXPECT_FALSE(state.window) << text;
        EXPECT_FALSE(state.theme) << text;
        EXPECT_TRUE(state.palettes.empty()) << text;
    }
}

TEST(HostState, UnwritableFolderIsReported) {
    EXPECT_FALSE(HostState().save("/proc/no/state.json"));
}
