#include "tests/host/ModuleLoadFixture.h"

ModuleLoad::ModuleLoad(const QString& file) : module(file), program(module.program) {}

bool ModuleLoad::load() {
    if (!module.load()) {
        return false;
    }
    if (service == nullptr) {
        service = std::make_unique<FakeHttpServer>();
        service->answer("/zr/ai/session/user", R"({"code":200,"msg":"success","data":[]})");
        service->answer("/zr/ai/session/create", R"({"code":200,"msg":"success","data":"session-1"})");
        qputenv("ZR_ZENTRI_SERVICE", service->address().toLatin1());
        qputenv("ZR_ZENTRI_PROBE", "http://" + service->address().toLatin1());
    }
    return true;
}

int ModuleLoad::askAndReceive(const QString& question) {
    const int before = service->requestCount();
    LoadedModule::ask(question);
    // A session is created for the first question.
    const bool come = TestProgram::pumpUntil([&] {
        return service->requestCount() > before &&
               service->request(service->requestCount() - 1).target == "/zr/ai/caddraw/chat";
    });
    return come ? service->requestCount() - 1 : -1;
}
