#pragma once

#include "AcExtensionModule.h"
#include "dbxEntryPoint.h"

/// The base class of a module with a user interface. Simplified: no class and command maps, so there is
/// nothing to register or unregister from them.
class AcRxArxApp : public AcRxDbxApp {
public:
    AcRx::AppRetCode On_kInitAppMsg(void* packet) override;
    AcRx::AppRetCode On_kUnloadAppMsg(void* packet) override;
    virtual AcRx::AppRetCode On_kInitDialogMsg(void* packet);
    virtual AcRx::AppRetCode On_kEndDialogMsg(void* packet);
    virtual AcRx::AppRetCode On_kSuspendMsg(void* packet);

    AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) override;
};

#ifdef _WIN32
#define ARX_ENTRY_EXPORT __declspec(dllexport)
// On Windows the loader calls DllMain.
#define ARX_CALL_DLL_MAIN
#else
#define ARX_ENTRY_EXPORT __attribute__((visibility("default")))
// Nothing calls DllMain when an ELF module is loaded and unloaded, so a static object in the module does.
#define ARX_CALL_DLL_MAIN static ArxDllMainCaller s_arxDllMainCaller(&DllMain);

class ArxDllMainCaller {
public:
    using DllMainPtr = BOOL (*)(HINSTANCE, DWORD, LPVOID);

    explicit ArxDllMainCaller(DllMainPtr dllMain);
    ~ArxDllMainCaller();
    ArxDllMainCaller(const ArxDllMainCaller&) = delete;
    ArxDllMainCaller& operator=(const ArxDllMainCaller&) = delete;

private:
    DllMainPtr m_dllMain;
    HINSTANCE m_instance;
};
#endif

/// Defines the module's application object and its two exports. To be used once, after the module's DllMain.
/// Simplified: the macro also defines acrxGetApiVersion and _hdllInstance, which the real SDK has in a
/// library.
#define IMPLEMENT_ARX_ENTRYPOINT(CLASS_NAME)                                                              \
    HINSTANCE _hdllInstance = nullptr;                                                                    \
    ARX_CALL_DLL_MAIN                                                                                     \
    static CLASS_NAME s_arxApplication;                                                                   \
    extern "C" ARX_ENTRY_EXPORT AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) { \
        return s_arxApplication.acrxEntryPoint(message, packet);                                          \
    }                                                                                                     \
    extern "C" ARX_ENTRY_EXPORT DWORD acrxGetApiVersion() {                                               \
        return MAKELONG(0, kAcRxRelease);                                                                 \
    }
