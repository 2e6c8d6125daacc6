#pragma once

#include "AcExtensionModule.h"
#include "dbxEntryPoint.h"

/// The wizard's base class of a module with a user interface. Simplified: the maps of classes and commands
/// that the wizard fills are not there, so there is nothing to register from them or to take back.
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
// The C run-time's start-up code calls DllMain.
#define ARX_CALL_DLL_MAIN
#else
#define ARX_ENTRY_EXPORT __attribute__((visibility("default")))
// Nothing calls DllMain when an ELF module is mapped and unmapped, so an object of the module does.
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

/// Defines the module's application object and its two exports. It stands once, after the module's DllMain.
/// (The vendor's library brings acrxGetApiVersion and _hdllInstance; here the macro does.)
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
