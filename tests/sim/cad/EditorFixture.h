#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "sim/cad/core/Editor.h"

/// Records the editor's calls; loading succeeds for the paths that a test adds to `loadable`.
class FakeServices : public cad::EditorServices {
public:
    void quit() override { ++quits; }
    bool loadModule(const std::string& path) override {
        for (const std::string& name : loadable) {
            if (name == path) {
                modules.push_back(path);
                return true;
            }
        }
        return false;
    }
    bool unloadModule(const std::string& name) override {
        for (size_t i = 0; i < modules.size(); ++i) {
            if (modules[i] == name) {
                modules.erase(modules.begin() + static_cast<std::ptrdiff_t>(i));
                return true;
            }
        }
        return false;
    }
    std::vector<std::string> loadedModules() const override { return modules; }
    void delay(int milliseconds) override { delays.push_back(milliseconds); }
    void wake() override { ++wakes; }

    int quits = 0;
    int wakes = 0;
    std::vector<int> delays;
    std::vector<std::string> loadable;
    std::vector<std::string> modules;
};

/// Records every notification, in order.
class RecordingListener : public cad::EditorListener {
public:
    void commandWillStart(const std::string& name) override { events.push_back("start " + name); }
    void commandEnded(const std::string& name) override { events.push_back("end " + name); }
    void commandCancelled(const std::string& name) override { events.push_back("cancel " + name); }
    void commandFailed(const std::string& name) override { events.push_back("fail " + name); }
    void sysVarWillChange(const std::string& name) override { events.push_back("will " + name); }
    void sysVarChanged(const std::string& name, bool success) override {
        events.push_back((success ? "changed " : "refused ") + name);
    }

    std::vector<std::string> events;
};

/// Finds commands by global name, exactly as typed.
class FakeExternalCommands : public cad::ExternalCommands {
public:
    std::optional<cad::ExternalCommand> find(const std::string& typedName) const override {
        for (const cad::ExternalCommand& command : commands) {
            if (command.globalName == typedName) {
                return command;
            }
        }
        return std::nullopt;
    }

    std::vector<cad::ExternalCommand> commands;
};

class EditorFixture : public testing::Test {
protected:
    EditorFixture() {
        editor.setExternalCommands(&external);
        editor.addListener(&listener);
    }

    /// Types the text and lets the editor process it.
    void type(const std::string& text) {
        editor.sendString(text);
        editor.processInput();
    }

    void pick(double x, double y) {
        editor.pick({x, y});
        editor.processInput();
    }

    void press(cad::EditKey key) {
        editor.typeKey(key);
        editor.processInput();
    }

    std::string prompt() const { return editor.commandLine().prompt(); }
    const std::vector<std::string>& lines() const { return editor.commandLine().lines(); }
    std::string lastLine() const { return lines().empty() ? "" : lines().back(); }
    const std::vector<cad::Entity>& entities() const { return editor.drawing().entities(); }

    FakeServices services;
    FakeExternalCommands external;
    RecordingListener listener;
    mutable cad::Editor editor{services};
};
