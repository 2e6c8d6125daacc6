// The package in a host that uses a Qt of its own, built differently: each must keep to its libraries and
// plugins.

#include <map>
#include <sstream>

#include "tests/package/PackagedModule.h"

namespace fs = std::filesystem;

namespace {

const std::string kOtherQt = OTHER_QT_FOLDER;
const std::string kOtherPlugins = kOtherQt + "/plugins";
const std::string kOwnCore = kBundle + "/Contents/Qt5Core" QT_INFIX ".dll";

class ModuleBesideAnotherQt : public PackagedModule {
protected:
    bool loadOtherQt() { return loadModule(kOtherQt + "/OtherQt.arx"); }

    /// Has the other Qt tried out by the module that uses it; the facts that this prints.
    std::map<std::string, std::string> tryOtherQt() {
        host->ask("clickWindow", {{"window", "commandLine"}});
        host->ask("clearHistory");
        host->type("OTHERQT\n");
        EXPECT_TRUE(host->waitForLine("OtherQt end:")) << host->text();
        std::map<std::string, std::string> facts;
        std::istringstream lines(host->text());
        for (std::string line; std::getline(lines, line);) {
            const std::string mark = "OtherQt ";
            const std::size_t colon = line.find(": ");
            if (line.rfind(mark, 0) == 0 && colon != std::string::npos) {
                facts[line.substr(mark.size(), colon - mark.size())] = line.substr(colon + 2);
            }
        }
        return facts;
    }

    void expectOtherQtWorks() {
        std::map<std::string, std::string> facts = tryOtherQt();
        EXPECT_EQ(facts["timer"], "fired");
        ASSERT_FALSE(facts["library"].empty());
        EXPECT_TRUE(fs::equivalent(facts["library"], kOtherQt + "/Qt5Core.dll")) << facts["library"];
        EXPECT_EQ(facts["folders"].find("ZR_Zentri"), std::string::npos) << facts["folders"];
    }

    void expectTwoQts() const {
        EXPECT_TRUE(loadedOnly(kOwnCore));
        EXPECT_TRUE(loadedOnly(kOtherQt + "/Qt5Core.dll"));
    }

    /// The libraries that the process has from the other Qt's plugin folder, or a copy of it.
    std::vector<std::string> otherPlugins() const {
        std::vector<std::string> plugins;
        for (const char* name : {"qwindows.dll", "qother.dll", "qotherimage.dll"}) {
            for (const fs::path& file : loadedFiles(name)) {
                if (file.parent_path().parent_path().filename() != "Contents") {
                    plugins.push_back(file.string());
                }
            }
        }
        return plugins;
    }
};

}  // namespace

TEST_F(ModuleBesideAnotherQt, WorksWhenItComesAfterIt) {
    start();
    ASSERT_TRUE(loadOtherQt());
    expectOtherQtWorks();
    ASSERT_TRUE(load(kBundle));
    expectPanel();
    expectQuestionIsAnswered("circle");
    expectTwoQts();
    expectOtherQtWorks();
    ASSERT_TRUE(unload());
    expectOtherQtWorks();
    host->ask("quit");
    EXPECT_EQ(host->waitForExit(), 0);
}

TEST_F(ModuleBesideAnotherQt, WorksWhenItComesBeforeIt) {
    start();
    ASSERT_TRUE(load(kBundle));
    expectPanel();
    ASSERT_TRUE(loadOtherQt());
    expectOtherQtWorks();
    expectQuestionIsAnswered("circle");
    expectTwoQts();
    ASSERT_TRUE(unload());
    expectOtherQtWorks();
    ASSERT_TRUE(load(kBundle));
    expectPanel();
    expectOtherQtWorks();
    host->ask("quit");
    EXPECT_EQ(host->waitForExit(), 0);
}

TEST_F(ModuleBesideAnotherQt, LeavesThePluginsOfAVariableToIt) {
    setEnvironment("QT_PLUGIN_PATH", kOtherPlugins.c_str());
    start();
    // Its plugins can be loaded from now on.
    ASSERT_TRUE(loadOtherQt());
    ASSERT_TRUE(load(kBundle));
    expectPanel();
    EXPECT_EQ(otherPlugins(), std::vector<std::string>());
    EXPECT_EQ(tryOtherQt()["plugin"], "of the other Qt");
    EXPECT_EQ(otherPlugins().size(), 1u);
}

TEST_F(ModuleBesideAnotherQt, LeavesThePluginsBesideTheProgramToIt) {
    const fs::path folder = MACHINE_FOLDER "/host-with-plugins";
    fs::remove_all(folder);
    fs::copy(kHostFolder, folder, fs::copy_options::recursive);
    for (const fs::directory_entry& kind : fs::directory_iterator(kOtherPlugins)) {
        fs::copy(kind.path(), folder / kind.path().filename(), fs::copy_options::recursive);
    }
    start(folder.string());
    // Its plugins can be loaded from now on.
    ASSERT_TRUE(loadOtherQt());
    ASSERT_TRUE(load(kBundle));
    expectPanel();
    EXPECT_EQ(otherPlugins(), std::vector<std::string>());
    EXPECT_EQ(tryOtherQt()["plugin"], "of the other Qt");
    EXPECT_EQ(otherPlugins().size(), 1u);
}
