#include "sim/cad/core/HostState.h"

#include <gtest/gtest.h>

#include <filesystem>

using cad::DockSide;
using cad::HostState;

namespace {
const char* const kToolId = "{5D0C4B1A-9E37-4F6B-8A21-3C547D601BF2}";
}

TEST(HostState, RoundTripsThroughItsFile) {
    const std::string folder = testing::TempDir() + "zentri_host_state";
    const std::string path = folder + "/deep/state.json";
    HostState state;
    state.window = HostState::Window{10, -20, 1280, 800, true};
    state.theme = 1;
    state.palettes[kToolId] = {DockSide::Right, 420};
    ASSERT_TRUE(state.save(path));

    const HostState read = HostState::load(path);
    ASSERT_TRUE(read.window);
    EXPECT_EQ(read.window->y, -20);
    EXPECT_EQ(read.window->width, 1280);
    EXPECT_TRUE(read.window->maximized);
    EXPECT_EQ(read.theme, 1);
    ASSERT_EQ(read.palettes.count(kToolId), 1u);
    EXPECT_EQ(read.palettes.at(kToolId).side, DockSide::Right);
    EXPECT_EQ(read.palettes.at(kToolId).width, 420);
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
                             R"({"palettes":{"{5D0C4B1A-9E37-4F6B-8A21-3C547D601BF2}":3}})",
                             R"({"palettes":{"{5D0C4B1A-9E37-4F6B-8A21-3C547D601BF2}":{"width":0}}})",
                             R"({"palettes":{"{5D0C4B1A-9E37-4F6B-8A21-3C547D601BF2}":{"width":1e99}}})"}) {
        const HostState state = HostState::fromJson(text);
        EXPECT_FALSE(state.window) << text;
        EXPECT_FALSE(state.theme) << text;
        EXPECT_TRUE(state.palettes.empty()) << text;
    }
}

TEST(HostState, PalettesKeptByTheirTitlesAreForgotten) {
    for (const char* key :
         {"Panel", "", "{5D0C4B1A-9E37-4F6B-8A21-3C547D601BF2", "5D0C4B1A-9E37-4F6B-8A21-3C547D601BF2",
          "{5D0C4B1A-9E37-4F6B-8A21-3C547D601BFX}", "{5D0C4B1A-9E37-4F6B-8A21-3C547D601BF2} "}) {
        const HostState state = HostState::fromJson(std::string("{\"theme\":1,\"palettes\":{\"") + key +
                                                    "\":{\"side\":\"right\",\"width\":420}}}");
        EXPECT_TRUE(state.palettes.empty()) << key;
        EXPECT_EQ(state.theme, 1) << key;
    }
}

TEST(HostState, UnwritableFolderIsReported) {
    EXPECT_FALSE(HostState().save("/proc/no/state.json"));
}
