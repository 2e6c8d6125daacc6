#include "tests/host/ModuleLoadFixture.h"

#include "tests/host/EmptyService.h"

ModuleLoad::ModuleLoad(const QString& file) : module(file), program(module.program) {}

bool ModuleLoad::load() {
    if (!module.load()) {
        return false;
    }
    if (service == nullptr) {
        service = std::make_unique<FakeHttpServer>();
        serveEmptyHistory(*service);
    }
    return true;
}

int ModuleLoad::askAndReceive(const QString& question) {
    const int before = service->requestCount();
    LoadedModule::ask(question);
    // A session is created for the first question.
    const bool come = TestProgram::pumpUntil([&] {
        return service->requestCount() > before &&
               service->request(service->requestCount() - 1).target == kChatTarget;
    });
    return come ? service->requestCount() - 1 : -1;
}
