#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "tests/host/LoadedModule.h"
#include "tests/support/http/FakeHttpServer.h"

/// The module as it is shipped, with an AI service that knows no sessions.
class ModuleLoad : public testing::Test {
protected:
    explicit ModuleLoad(const QString& file = LoadedModule::builtFile());

    /// Loads the module. After the first load, which creates the Qt application, also starts the service.
    bool load();
    static bool unload() { return LoadedModule::unload(); }
    bool openPanel() { return module.openPanel(); }
    /// Asks a question and waits until it has reached the service; returns the request's index, or -1 on
    /// timeout.
    int askAndReceive(const QString& question);

    std::unique_ptr<FakeHttpServer> service;
    LoadedModule module;
    TestProgram& program;
};
