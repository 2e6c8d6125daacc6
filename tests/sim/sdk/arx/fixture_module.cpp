// A module for the loader's tests. It prints the messages it receives on the host's command line; macros
// select its variant at compile time.

#include <acutads.h>
#include <arxEntryPoint.h>
#include <rxregsvc.h>

#include <stdexcept>

#ifndef FIXTURE_NAME
#define FIXTURE_NAME "fixture"
#endif
#ifndef FIXTURE_LOCKED
#define FIXTURE_LOCKED false
#endif
#ifndef FIXTURE_THROWS_ON
#define FIXTURE_THROWS_ON AcRx::kNullMsg
#endif
#ifndef FIXTURE_UNLOADS_ON
#define FIXTURE_UNLOADS_ON AcRx::kNullMsg
#endif
#ifndef FIXTURE_INIT_RESULT
#define FIXTURE_INIT_RESULT AcRx::kRetOK
#endif

namespace {

HINSTANCE g_instance = nullptr;

class FixtureApp : public AcRxArxApp {
public:
    AcRx::AppRetCode On_kInitAppMsg(void* packet) override {
        acutPrintf(_T("[%s init %d]"), name().GetString(), g_instance != nullptr ? 1 : 0);
        AcRxArxApp::On_kInitAppMsg(packet);
        if (FIXTURE_LOCKED) {
            acrxDynamicLinker->lockApplication(packet);
        }
        throwOn(AcRx::kInitAppMsg);
        unloadOn(AcRx::kInitAppMsg);
        return FIXTURE_INIT_RESULT;
    }

    AcRx::AppRetCode On_kLoadDwgMsg(void* packet) override {
        acutPrintf(_T("[%s loadDwg]"), name().GetString());
        return AcRxArxApp::On_kLoadDwgMsg(packet);
    }

    AcRx::AppRetCode On_kUnloadDwgMsg(void* packet) override {
        acutPrintf(_T("[%s unloadDwg]"), name().GetString());
        return AcRxArxApp::On_kUnloadDwgMsg(packet);
    }

    AcRx::AppRetCode On_kUnloadAppMsg(void* packet) override {
        acutPrintf(_T("[%s unload]"), name().GetString());
        throwOn(AcRx::kUnloadAppMsg);
        return AcRxArxApp::On_kUnloadAppMsg(packet);
    }

    AcRx::AppRetCode On_kQuitMsg(void* packet) override {
        acutPrintf(_T("[%s quit]"), name().GetString());
        unloadOn(AcRx::kQuitMsg);
        return AcRxArxApp::On_kQuitMsg(packet);
    }

    AcRx::AppRetCode On_kSuspendMsg(void* packet) override {
        acutPrintf(_T("[%s suspend]"), name().GetString());
        return AcRxArxApp::On_kSuspendMsg(packet);
    }

    void RegisterServerComponents() override { acutPrintf(_T("[%s register]"), name().GetString()); }

private:
    static void throwOn(AcRx::AppMsgCode message) {
        if (message == FIXTURE_THROWS_ON) {
            throw std::runtime_error("thrown by the test module");
        }
    }

    static void unloadOn(AcRx::AppMsgCode message) {
        if (message == FIXTURE_UNLOADS_ON) {
            acrxUnloadModule(name() + _T(".arx"));
        }
    }

    static CString name() { return CString(FIXTURE_NAME); }
};

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        g_instance = instance;
    }
    return TRUE;
}

IMPLEMENT_ARX_ENTRYPOINT(FixtureApp)
