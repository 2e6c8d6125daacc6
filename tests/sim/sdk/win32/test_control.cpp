#include "tests/sim/sdk/win32/TestWindow.h"

#include <win32_control.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

Win32Picture picture(const std::vector<std::string>& rows) {
    Win32Picture result;
    result.width = static_cast<int>(rows.front().size());
    result.height = static_cast<int>(rows.size());
    for (const std::string& row : rows) {
        for (const char mark : row) {
            result.pixels.push_back(mark == '#' ? 0xFF8040 : mark == '+' ? 0xFA7A46 : 0xFFFFFF);
        }
    }
    return result;
}

}  // namespace

TEST(Clusters, SeparateGroupsAreSeparateClusters) {
    const auto clusters = win32FindClusters(picture({
                                                "##..#",
                                                "##..#",
                                                ".....",
                                                ".###.",
                                            }),
                                            0xFF8040, 0, 1, 1);
    ASSERT_EQ(clusters.size(), 3U);
    EXPECT_EQ(clusters[0].left, 0);
    EXPECT_EQ(clusters[0].right, 2);
    EXPECT_EQ(clusters[0].bottom, 2);
    EXPECT_EQ(clusters[1].left, 4);
    EXPECT_EQ(clusters[2].top, 3);
    EXPECT_EQ(clusters[2].right, 4);
}

TEST(Clusters, PixelsConnectedAroundACornerAreOneCluster) {
    const auto clusters = win32FindClusters(picture({
                                                "#..#",
                                                "#..#",
                                                "####",
                                            }),
                                            0xFF8040, 0, 1, 1);
    ASSERT_EQ(clusters.size(), 1U);
    EXPECT_EQ(clusters[0].right, 4);
    EXPECT_EQ(clusters[0].bottom, 3);
}

TEST(Clusters, SmallClustersAndOtherColoursAreIgnored) {
    const Win32Picture sample = picture({
        "##.+",
        "##.+",
        "....",
    });
    EXPECT_EQ(win32FindClusters(sample, 0xFF8040, 0, 4, 1).size(), 1U);
    EXPECT_EQ(win32FindClusters(sample, 0xFF8040, 0, 5, 1).size(), 0U);
    EXPECT_EQ(win32FindClusters(sample, 0xFF8040, 6, 1, 1).size(), 2U);
    EXPECT_EQ(win32FindClusters(sample, 0x000000, 6, 1, 1).size(), 0U);
}

TEST(Clusters, JoinDistanceMergesNearbyClusters) {
    const Win32Picture sample = picture({"#..#..#"});
    EXPECT_EQ(win32FindClusters(sample, 0xFF8040, 0, 1, 1).size(), 3U);
    EXPECT_EQ(win32FindClusters(sample, 0xFF8040, 0, 1, 3).size(), 1U);
}

TEST(Pictures, WindowIsCapturedAndSavedAsPng) {
    TestWindow window(WS_POPUP, {10, 20, 110, 80});
    ShowWindow(window, SW_SHOW);
    pumpAll();
    const Win32Picture grabbed = win32Grab(window);
    EXPECT_EQ(grabbed.width, 100);
    EXPECT_EQ(grabbed.height, 60);
    EXPECT_EQ(grabbed.at(50, 30), 0xFFFFFFU);
    const std::string path = (std::filesystem::temp_directory_path() / "zr_win32_grab.png").string();
    ASSERT_TRUE(win32SavePng(grabbed, path));
    char signature[4] = {};
    std::ifstream(path, std::ios::binary).read(signature, 4);
    EXPECT_EQ(std::string(signature + 1, 3), "PNG");
    std::filesystem::remove(path);
    const Win32Picture screen = win32Grab(nullptr);
    EXPECT_EQ(screen.width, GetSystemMetrics(SM_CXSCREEN));
}

TEST(Pictures, HiddenWindowGivesAnEmptyPicture) {
    const TestWindow window;
    EXPECT_TRUE(win32Grab(window).pixels.empty());
    EXPECT_FALSE(win32SavePng({}, "/nowhere.png"));
}
