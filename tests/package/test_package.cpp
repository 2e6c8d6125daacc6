// The packaged module in the host, as on a machine with neither Qt nor a compiler.

#include "tests/package/PackagedModule.h"

namespace fs = std::filesystem;

TEST_F(PackagedModule, OpensThePanelWithThePackagedLibraries) {
    start();
    for (const fs::path& file : loadedFiles()) {
        ASSERT_NE(lower(file.filename().string()).rfind("qt5", 0), 0u) << "the host itself uses " << file;
    }
    ASSERT_TRUE(load(kBundle));
    expectPanel();
    for (const char* name :
         {"ZR_Zentri.arx", "Qt5Core" QT_INFIX ".dll", "Qt5Gui" QT_INFIX ".dll", "Qt5Widgets" QT_INFIX ".dll",
          "Qt5Network" QT_INFIX ".dll", "platforms/qwindows.dll", "styles/qwindowsvistastyle.dll"}) {
        EXPECT_TRUE(loadedOnly(kBundle + "/Contents/" + name));
    }
}

TEST_F(PackagedModule, UnloadsFromTheHostAndLoadsAgain) {
    start();
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(load(kBundle)) << round;
        expectPanel();
        ASSERT_TRUE(unload()) << round;
        host->ask("clearHistory");
    }
    host->ask("quit");
    EXPECT_EQ(host->waitForExit(), 0);
}

TEST_F(PackagedModule, WithoutQtDoesNotLoadIfTheHostHasNone) {
    start();
    EXPECT_FALSE(load(kBundleWithoutQt));
    host->type("LINE\n");
    EXPECT_TRUE(host->waitForPrompt("LINE"));
}

TEST_F(PackagedModule, WithoutQtUsesTheQtOfTheHost) {
    setEnvironment("PATH", pathBefore.c_str());
    setEnvironment("QT_PLUGIN_PATH", pluginsBefore.c_str());
    start();
    ASSERT_TRUE(load(kBundleWithoutQt));
    expectPanel();
    const std::vector<fs::path> core = loadedFiles("Qt5Core" QT_INFIX ".dll");
    ASSERT_EQ(core.size(), 1u);
    EXPECT_FALSE(fs::equivalent(core.front().parent_path(), kBundleWithoutQt + "/Contents"));
}
