#pragma once

#include <gtest/gtest.h>
#include <windows.h>

// It needs the one above.
#include <tlhelp32.h>

#include <QCoreApplication>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/sim/cad/HostProcess.h"
#include "tests/support/http/FakeHttpServer.h"

inline const std::string kBundle = MACHINE_FOLDER "/Application Plugins/ZR_Zentri.bundle";
inline const std::string kBundleWithoutQt = MACHINE_FOLDER "/without-qt/ZR_Zentri.bundle";
inline const std::string kHostFolder = MACHINE_FOLDER "/host";

/// A host on a machine that has nothing but Windows within reach, with a service that knows no conversations.
class PackagedModule : public testing::Test {
protected:
    PackagedModule() {
        service.answer("/zr/ai/session/user", R"({"code":200,"msg":"success","data":[]})");
        service.answer("/zr/ai/session/create", R"({"code":200,"msg":"success","data":"session-1"})");
        service.answer("/zr/ai/caddraw/chat", "data:An answer.\n\n", 200, "text/event-stream");
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

    void start(const std::string& hostFolder = kHostFolder) {
        host = std::make_unique<HostProcess>(
            std::vector<std::string>{"--no-state", "--token", "token", "--theme", "light"}, true,
            hostFolder + "/zentri-host.exe");
    }

    /// Loads a module; whether the host did.
    bool loadModule(const std::string& file) {
        return host->call({{"cmd", "arx"}, {"load", file}})["ok"] == true;
    }
    bool load(const std::string& bundle) { return loadModule(bundle + "/Contents/ZR_Zentri.arx"); }
    bool unload() { return host->call({{"cmd", "arx"}, {"unload", "ZR_Zentri.arx"}})["ok"] == true; }

    /// The files that the host's process has mapped as libraries.
    std::vector<std::filesystem::path> loadedFiles() const {
        std::vector<std::filesystem::path> files;
        const HANDLE list = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, static_cast<DWORD>(host->pid()));
        MODULEENTRY32W entry{};
        entry.dwSize = sizeof entry;
        for (BOOL more = Module32FirstW(list, &entry); more != FALSE; more = Module32NextW(list, &entry)) {
            files.emplace_back(entry.szExePath);
        }
        CloseHandle(list);
        return files;
    }

    /// The mapped files of this name, which may be one of each of several folders.
    std::vector<std::filesystem::path> loadedFiles(const std::string& name) const {
        std::vector<std::filesystem::path> files;
        for (const std::filesystem::path& file : loadedFiles()) {
            if (lower(file.filename().string()) == lower(name)) {
                files.push_back(file);
            }
        }
        return files;
    }

    /// Whether the process has exactly one library of the file's name, which is that file.
    testing::AssertionResult loadedOnly(const std::filesystem::path& file) const {
        const std::vector<std::filesystem::path> found = loadedFiles(file.filename().string());
        if (found.size() == 1 && std::filesystem::equivalent(found.front(), file)) {
            return testing::AssertionSuccess();
        }
        testing::AssertionResult failure = testing::AssertionFailure();
        failure << file << " is not loaded alone; loaded:";
        for (const std::filesystem::path& other : found) {
            failure << ' ' << other;
        }
        return failure;
    }

    void expectPanel() {
        host->type("KQ_AICHAT\n");
        EXPECT_TRUE(host->waitForLine("Zentri:用户数据初始化完成")) << host->text();
        EXPECT_TRUE(HostProcess::waitUntil([&] {
            const HostProcess::Json set = host->window("paletteSet");
            return !set.is_null() && set["visible"] == true;
        }));
        // The view's own colour: it has been painted.
        EXPECT_TRUE(HostProcess::waitUntil([&] {
            return !host->ask("findColor", {{"color", kInputFrameColor}, {"window", "palette"}})["clusters"]
                        .empty();
        }));
    }

    /// Types a question into the panel, which must reach the service; its answer is a short one.
    void expectQuestionIsAnswered(const std::string& question) {
        const int before = service.requestCount();
        const HostProcess::Json frames = host->ask(
            "findColor", {{"color", kInputFrameColor}, {"window", "palette"}, {"tolerance", 24}})["clusters"];
        ASSERT_FALSE(frames.empty());
        const HostProcess::Json box = *std::max_element(
            frames.begin(), frames.end(), [](const HostProcess::Json& a, const HostProcess::Json& b) {
                return a["width"].get<int>() * a["height"].get<int>() <
                       b["width"].get<int>() * b["height"].get<int>();
            });
        host->ask("click", {{"x", box["x"].get<int>() + box["width"].get<int>() / 2},
                            {"y", box["y"].get<int>() + box["height"].get<int>() / 2}});
        host->type(question + "\n");
        EXPECT_TRUE(HostProcess::waitUntil([&] {
            for (int i = before; i < service.requestCount(); ++i) {
                const FakeHttpServer::Request request = service.request(i);
                if (request.target == "/zr/ai/caddraw/chat" &&
                    request.body.contains(QByteArray::fromStdString(question))) {
                    return true;
                }
            }
            return false;
        })) << host->text();
        // The next text is for the command line again.
        host->ask("clickWindow", {{"window", "commandLine"}});
    }

    static std::string lower(std::string text) {
        std::transform(text.begin(), text.end(), text.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
        return text;
    }

    static std::string variable(const char* name) {
        const char* const value = std::getenv(name);
        return value != nullptr ? value : "";
    }

    static constexpr const char* kInputFrameColor = "#3C88F0";

private:
    // Without an application Qt opens no port.
    int m_argumentCount = 0;
    QCoreApplication m_application{m_argumentCount, nullptr};

protected:
    FakeHttpServer service;
    const std::string pathBefore = variable("PATH");
    const std::string pluginsBefore = variable("QT_PLUGIN_PATH");
    std::unique_ptr<HostProcess> host;
};
