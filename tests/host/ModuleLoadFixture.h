#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "tests/host/LoadedModule.h"
#include "tests/support/http/FakeHttpServer.h"

/// The module as it is shipped, with an AI service that knows no sessions.
class ModuleLoad : public testing::Test {
protected:
    explicit ModuleLoad(const QString& file = LoadedModule::builtFile());

    /// Loads the module, and with the first load, once there is Qt's application, starts the service.
    bool load();
    static bool unload() { return LoadedModule::unload(); }
    bool openPanel() { return module.openPanel(); }
    /// Asks a question and waits until it has reached the service; returns the request's number, -1 when it
    /// does not come.
    int askAndReceive(const QString& question);

    std::unique_ptr<FakeHttpServer> service;
    LoadedModule module;
    TestProgram& program;
};
