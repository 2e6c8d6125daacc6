// The packaged module in the host, as on a machine with neither Qt nor a compiler.

#include <gtest/gtest.h>
#include <windows.h>

// Needs <windows.h> first.
#include <tlhelp32.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "tests/sim/cad/HostProcess.h"
#include "tests/support/http/FakeHttpServer.h"

namespace fs = std::filesystem;

namespace {

const std::string kBundle = MACHINE_FOLDER "/Application Plugins/ZR_Zentri.bundle";
const std::string kBundleWithoutQt = MACHINE_FOLDER "/without-qt/ZR_Zentri.bundle";
const std::string kHost = MACHINE_FOLDER "/host/zentri-host.exe";

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

/// A host on a machine whose PATH holds only Windows itself, and a service without conversations.
class PackagedModule : public testing::Test {
protected:
    PackagedModule() {
        service.answer("/zr/ai/session/user", R"({"code":200,"msg":"success","data":[]})");
        for (const char* name : {"WINEPATH", "QT_PLUGIN_PATH", "QT_QPA_PLATFORM"}) {
            setEnvironment(name, nullptr);
        }
        char windows[MAX_PATH];
        GetSystemDirectoryA(windows, MAX_PATH);
        setEnvironment("PATH", windows);
        const std::string address = service.address().toStdString();
        setEnvironment("ZR_ZENTRI_SERVICE", address.c_str());
        setEnvironment("ZR_ZENTRI_PROBE", ("http://" + address).c_str());
    }

    void start() {
        host = std::make_unique<HostProcess>(
            std::vector<std::string>{"--no-state", "--token", "token", "--theme", "light"}, true, kHost);
    }

    /// Loads the module of the bundle and returns the host's reply.
    HostProcess::Json load(const std::string& bundle) {
        return host->call({{"cmd", "arx"}, {"load", bundle + "/Contents/ZR_Zentri.arx"}});
    }

    /// The DLLs loaded in the host process: their folders, by file name in lower case.
    std::map<std::string, fs::path> loadedLibraries() const {
        std::map<std::string, fs::path> libraries;
        const HANDLE list = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, static_cast<DWORD>(host->pid()));
        MODULEENTRY32W entry{};
        entry.dwSize = sizeof entry;
        for (BOOL more = Module32FirstW(list, &entry); more != FALSE; more = Module32NextW(list, &entry)) {
            const fs::path file(entry.szExePath);
            libraries[lower(file.filename().string())] = file.parent_path();
        }
        CloseHandle(list);
        return libraries;
    }

    void expectPanel() {
        host->type("KQ_AICHAT\n");
        EXPECT_TRUE(host->waitForLine("Zentri:用户数据初始化完成")) << host->text();
        EXPECT_TRUE(HostProcess::waitUntil([&] {
            const HostProcess::Json set = host->window("paletteSet");
            return !set.is_null() && set["visible"] == true;
        }));
        // A colour of the view: it has been painted.
        EXPECT_TRUE(HostProcess::waitUntil([&] {
            return !host->ask("findColor", {{"color", kInputFrameColor}, {"window", "palette"}})["clusters"]
                        .empty();
        }));
    }

    static constexpr const char* kInputFrameColor = "#3C88F0";
    FakeHttpServer service;
    const std::string pathBefore = variable("PATH");
    const std::string pluginsBefore = variable("QT_PLUGIN_PATH");
    std::unique_ptr<HostProcess> host;
};

}  // namespace

TEST_F(PackagedModule, OpensThePanelWithThePackagedLibraries) {
    start();
    for (const auto& [name, folder] : loadedLibraries()) {
        ASSERT_NE(name.rfind("qt5", 0), 0u) << "the host itself uses " << name;
    }
    ASSERT_EQ(load(kBundle)["ok"], true);
    expectPanel();

    const auto libraries = loadedLibraries();
    for (const char* name :
         {"zr_zentri.arx", "qt5core.dll", "qt5gui.dll", "qt5widgets.dll", "qt5network.dll"}) {
        ASSERT_EQ(libraries.count(name), 1u) << name;
        EXPECT_TRUE(fs::equivalent(libraries.at(name), kBundle + "/Contents")) << name;
    }
    for (const auto& [name, folder] :
         {std::pair("qwindows.dll", "platforms"), {"qwindowsvistastyle.dll", "styles"}}) {
        ASSERT_EQ(libraries.count(name), 1u) << name;
        EXPECT_TRUE(fs::equivalent(libraries.at(name), kBundle + "/Contents/" + folder)) << name;
    }
}

TEST_F(PackagedModule, UnloadsFromTheHostAndLoadsAgain) {
    start();
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(load(kBundle)["ok"], true) << round;
        expectPanel();
        ASSERT_EQ(host->call({{"cmd", "arx"}, {"unload", "ZR_Zentri.arx"}})["ok"], true) << round;
        host->ask("clearHistory");
    }
    host->ask("quit");
    EXPECT_EQ(host->waitForExit(), 0);
}

TEST_F(PackagedModule, WithoutQtDoesNotLoadIfTheHostHasNone) {
    start();
    EXPECT_EQ(load(kBundleWithoutQt)["ok"], false);
    host->type("LINE\n");
    EXPECT_TRUE(host->waitForPrompt("LINE"));
}

TEST_F(PackagedModule, WithoutQtUsesTheQtOfTheHost) {
    setEnvironment("PATH", pathBefore.c_str());
    setEnvironment("QT_PLUGIN_PATH", pluginsBefore.c_str());
    start();
    ASSERT_EQ(load(kBundleWithoutQt)["ok"], true);
    expectPanel();
    EXPECT_FALSE(fs::equivalent(loadedLibraries().at("qt5core.dll"), kBundleWithoutQt + "/Contents"));
}
